#include <CommandProcessor/types/RealMoneyAcc.h>
#include <CommandProcessor/wire/DeserializeCommandBuf.h>
#include <CommandProcessor/wire/SerializeCommandBuf.h>

namespace poker {

void RealMoneyAcc::serialize(SerializeCommandBuf& buf) const { buf << descriptor_; }

void RealMoneyAcc::deserialize(DeserializeCommandBuf& buf) { buf >> descriptor_; }

}  // namespace poker
