// expect-error: no matching
// A pointer is no bool on the wire.
#include <CommandProcessor/wire/SerializeCommandBuf.h>

void misuse(poker::SerializeCommandBuf& buf, int* pointer) { buf.write(pointer); }
