#pragma once

#include <hostkit/CommandHandle.h>
#include <inspect/schema/Schema.h>

namespace poker::cmdproc {

/// A command of the class in which every field travels: one element in each list and map, every condition met, numbers
/// and texts that can be told from zeros.
CommandHandle<> makeSpecimen(const CommandSchema& schema);

}  // namespace poker::cmdproc
