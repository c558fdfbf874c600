#include <CommandProcessor/types/DbRecordImpl.h>
#include <CommandProcessor/types/SeatIDSet.h>

namespace poker {

bool SeatIDSet::insert(const SeatID& seat) {
  SeatID* const last = seats_.data() + size_;
  // Seats mostly arrive in order: look at the end first.
  SeatID* const place = size_ != 0 && last[-1] < seat ? last : std::lower_bound(seats_.data(), last, seat);
  if (place != last && *place == seat) return false;
  const SeatID added = seat;  // which may be a part of this set that moves
  std::copy_backward(place, last, last + 1);
  *place = added;
  ++size_;
  return true;
}

bool SeatIDSet::erase(const SeatID& seat) {
  SeatID* const last = seats_.data() + size_;
  SeatID* const place = std::lower_bound(seats_.data(), last, seat);
  if (place == last || *place != seat) return false;
  std::copy(place + 1, last, place);
  --size_;
  return true;
}

template class Record<SeatIDSet>;
template class DbRecord<SeatIDSet>;

}  // namespace poker
