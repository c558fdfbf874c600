#pragma once

#include <CommandProcessor/core/PokerCommandI.h>
#include <CommandProcessor/types/Card.h>
#include <CommandProcessor/types/FieldJson.h>
#include <CommandProcessor/types/RealMoneyType.h>

#include <cstdint>
#include <span>
#include <string>

namespace poker {

/// One line that tells a command to a person: its fields by name and in wire order, `sequenceNumber=5`. Secrets are
/// shown as *** unless asked for, text from a peer is escaped (0x20 to 0x7E only). The class's name is not part of it.
/// Empty for a command without fields or a class that is not in the catalogue.
std::string fieldsAsText(const PokerCommandI& command, JsonSecrets secrets = JsonSecrets::kMask);

/// Bytes as "80 02 05", no more than `most` of them; what is left out is told as "… 120 bytes".
std::string bytesAsText(std::span<const std::uint8_t> bytes, std::size_t most = SIZE_MAX);

/// The text with every character outside 0x20 to 0x7E, every backslash and every quote escaped, in quotes.
std::string quoted(std::string_view text);

/// With two decimals: "2.50", "-0.05".
std::string moneyText(const RealMoneyType& amount);

/// "As", "Td"; "??" for a card that is hidden, or none at all.
std::string cardText(const Card& card);

}  // namespace poker
