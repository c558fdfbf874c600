#pragma once

#include <inspect/capture/CapturedFrame.h>

namespace poker::holdem {

/// Sees every frame that the server receives or queues for sending, in this order and above any compression: those
/// inside of batches, and not the batches. Secrets are in them. Calls come from the thread of the io_context.
class FrameObserver {
 public:
  virtual ~FrameObserver() = default;

  /// Must not throw, nor call the server. What `frame` points to is valid during the call; `frame.table` as long as the
  /// server.
  /// @param frame  whole and without a `problem`; `table` is a name that no other table of the server has, or "lobby" for
  ///               a connection that looks at no table; `hand` the hand that is played at that table, from the command
  ///               that tells its number to its showdown; `offset` means nothing
  ///
  /// What counts is where the client was when it said, or was told, the command: the command by which it comes to a table
  /// belongs to the place where it was before, all answers to that to the new table, and what the old table told it until
  /// then to the old one.
  virtual void onFrame(const CapturedFrame& frame, const FrameEnds& ends) = 0;
};

}  // namespace poker::holdem
