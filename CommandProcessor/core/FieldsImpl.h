#pragma once

// The bodies that every command shares: a frame, then its field list. Included by the sources of commands alone.

#include <CommandProcessor/core/BaseCommand.h>
#include <CommandProcessor/core/ProcessorFamily.h>
#include <CommandProcessor/types/TypeCodecs.h>
#include <CommandProcessor/wire/FieldArchives.h>

namespace poker {

using namespace wire;  // the words of the field lists

/// Frame: type code (byte), family (byte).
inline void writeFrame(SerializeCommandBuf& buf, std::uint32_t typeCode, ProcessorFamily family) {
  buf.write(static_cast<std::uint8_t>(typeCode));
  buf.write(static_cast<std::uint8_t>(family));
}

template <class T>
void serializeFields(const T& command, ProcessorFamily family, SerializeCommandBuf& buf) {
  FieldAccess::aboutToSerialize(command, buf);
  writeFrame(buf, command.getTypeCode(), family);
  FieldWriter<SerializeCommandBuf> writer(buf);
  FieldAccess::fields(command, writer);
}

template <class T>
void deserializeFields(T& command, DeserializeCommandBuf& buf) {
  command.clearConnections();
  FieldReader<DeserializeCommandBuf> reader(buf);
  FieldAccess::fields(command, reader);
}

template <class T, class Base>
BaseCommand<T, Base>::~BaseCommand() = default;

template <class T, class Base>
void BaseCommand<T, Base>::serialize(SerializeCommandBuf& buf) const {
  serializeFields(static_cast<const T&>(*this), Base::Traits::family, buf);
}

template <class T, class Base>
void BaseCommand<T, Base>::deserialize(DeserializeCommandBuf& buf) {
  deserializeFields(static_cast<T&>(*this), buf);
}

template <class T, class Base>
void BaseCommand<T, Base>::process(Results&, Processor&) {}

}  // namespace poker
