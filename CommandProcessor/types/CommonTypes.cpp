#include <CommandProcessor/types/CommonTypes.h>
#include <CommandProcessor/wire/RecordImpl.h>

#include <utility>

namespace poker {

CommonTypes::HardwareInfo::HardwareInfo(std::vector<std::string> macAddressesOfMachine,
                                        std::vector<std::string> diskSerialsOfMachine, std::string idOfMachine)
    : macAddresses(std::move(macAddressesOfMachine)),
      diskSerials(std::move(diskSerialsOfMachine)),
      machineID(std::move(idOfMachine)) {}

template class Record<CommonTypes::HardwareInfo>;
template class Record<CommonTypes::NewAccountInfo>;

}  // namespace poker
