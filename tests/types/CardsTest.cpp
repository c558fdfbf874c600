#include <CommandProcessor/types/FieldJson.h>
#include <CommandProcessor/types/SDInfo.h>
#include <CommandProcessor/types/SeatIDSet.h>
#include <CommandProcessor/types/UserCardsInfoVector.h>
#include <tests/support/AllocationCounter.h>
#include <tests/support/WireBytes.h>

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace poker::test {
namespace {

using Suit = Card::Suit;
using Rank = Card::Rank;
using Visibility = Card::Visibility;

const Card kQueenOfHearts(Suit::Heart, Rank::Queen);
const Card kOwnAce(Suit::Spade, Rank::Ace, Visibility::HiddenOwner);

TEST(Card, EveryByteIsOneCardAndWritesItselfAgain) {
  for (unsigned byte = 0; byte < 256; ++byte) {
    // What the byte means, counted out rather than calculated.
    unsigned suit = 0, rank = 0;
    for (unsigned face = byte < 100 ? byte : byte < 255 ? byte - 100 : 0; face != 0; --face) {
      if (++rank == 16) rank = 0, ++suit;
    }
    const auto visibility = byte == 255   ? Visibility::Hidden
                            : byte >= 100 ? Visibility::HiddenOwner
                                          : Visibility::Shown;
    const Card card = Card::fromByte(static_cast<std::uint8_t>(byte));
    EXPECT_EQ(card, Card(Suit{suit}, Rank{rank}, visibility)) << byte;
    EXPECT_EQ(card.toByte(), byte);
  }
}

TEST(Card, TellsItsReceiverNoMoreThanItMaySee) {
  Card card(Suit::Spade, Rank::Ace);
  EXPECT_EQ(card.toByte(), 78);
  card.setVisibility(Visibility::HiddenOwner);
  EXPECT_EQ(card.toByte(), 178);
  card.setVisibility(Visibility::Hidden);
  EXPECT_EQ(card.toByte(), 255);
  EXPECT_EQ(Card::fromByte(card.toByte()), Card());
  for (const std::uint32_t visibility : {0u, 2u, 5u, 0xFFFFFFFFu}) {
    EXPECT_EQ(Card(Suit::Club, Rank::Two, Visibility{visibility}).toByte(), 18) << visibility;
  }
}

TEST(Card, LogTextHasEveryWordAndAFallbackForEach) {
  EXPECT_EQ(kQueenOfHearts.toString(), "Color:Heart  Sign:Queen Visible: Shown");
  EXPECT_EQ(Card().toString(), "Color:no color  Sign:no sign Visible: Hidden");
  EXPECT_EQ(kOwnAce.toString(), "Color:Spade  Sign:Ace Visible: HiddenOwner");
  EXPECT_EQ(Card(Suit{9}, Rank{15}, Visibility{2}).toString(), "Color:no color  Sign:no sign Visible: unknown ??");
  EXPECT_EQ(Card(Suit{0xFFFFFFFF}, Rank{0xFFFFFFFF}, Visibility{0}).toString(),
            "Color:no color  Sign:no sign Visible: unknown ??");
  const char* const suits[] = {"no color", "Club", "Diamond", "Heart", "Spade", "no color"};
  const char* const ranks[] = {"no sign", "Ace", "2",  "3",    "4",     "5",    "6",   "7",
                               "8",       "9",   "10", "Jack", "Queen", "King", "Ace", "no sign"};
  for (std::uint32_t suit = 0; suit < std::size(suits); ++suit) {
    EXPECT_EQ(Card(Suit{suit}, Rank::Two).suitToString(false), suits[suit]);
    EXPECT_EQ(Card(Suit{suit}, Rank::Two).suitToString(), std::string("Color:") + suits[suit]);
  }
  for (std::uint32_t rank = 0; rank < std::size(ranks); ++rank) {
    EXPECT_EQ(Card(Suit::Club, Rank{rank}).rankToString(false), ranks[rank]);
    EXPECT_EQ(Card(Suit::Club, Rank{rank}).rankToString(), std::string(" Sign:") + ranks[rank]);
  }
}

TEST(CardVector, ReplacesWhatWasThereLongerOrShorter) {
  CardVector cards;
  ASSERT_EQ(decode(cards, hex("03 00 00 00 12 B2 FF")), "");
  EXPECT_EQ(cards, (CardVector{Card(Suit::Club, Rank::Two), kOwnAce, Card()}));
  ASSERT_EQ(decode(cards, hex("01 00 00 00 3C")), "");
  EXPECT_EQ(cards, CardVector{kQueenOfHearts});
  cards.push_back(kOwnAce);
  cards.setVisibility(Visibility::Hidden);
  EXPECT_EQ(toHex(encode(cards)), "02 00 00 00 FF FF");
}

TEST(CardVector, RejectsCountAboveBytesLeftWithoutMakingRoomForIt) {
  CardVector cards;
  for (const char* bytes : {"FF FF FF FF 12 12", "03 00 00 00 12 12", "00 00 00 80", "01 00 00"}) {
    const AllocationCounter counter;
    EXPECT_EQ(decode(cards, hex(bytes)), kNumberFails);
    EXPECT_LT(counter.peak(), 4096u);
  }
  UserCardsInfoVector hands;
  EXPECT_EQ(decode(hands, hex("FF FF FF 7F 00 00 00 00 00 01 FF FF FF FF 12")), kNumberFails);
}

TEST(UserCardsInfoVector, SteadyStateAllocatesNothingAndKeepsNothing) {
  const Bytes large = hex("02 00 00 00 07 02 00 00 00 B2 76 03 02 00 00 00 FF FF");
  const Bytes small = hex("01 00 00 00 03 01 00 00 00 FF");
  UserCardsInfoVector hands;
  ASSERT_EQ(decode(hands, large), "");
  const AllocationCounter counter;
  for (int round = 0; round < 3; ++round) {
    DeserializeCommandBuf first(small.data(), static_cast<std::uint32_t>(small.size()));
    hands.deserialize(first);
    DeserializeCommandBuf second(large.data(), static_cast<std::uint32_t>(large.size()));
    hands.deserialize(second);
    hands.clear();
    UserCardPack& pack = hands.emplace_back();
    EXPECT_TRUE(pack.cards().empty() && !pack.getSeatID().isValid()) << "an added pack is empty";
    pack.cards().push_back(kOwnAce);
    hands.push_back(pack);
  }
  EXPECT_EQ(counter.calls(), 0u);
}

TEST(SteadyVector, BehavesAsAVector) {
  std::mt19937 random(1);
  std::vector<std::string> model;
  SteadyVector<std::string> vector;
  for (int step = 0; step < 3000; ++step) {
    const std::string text(random() % 40, static_cast<char>('a' + random() % 26));
    switch (random() % 8) {
      case 0:
        model.resize(random() % 6), vector.resize(model.size());
        break;
      case 1:
        model.clear(), vector.clear();
        break;
      case 2:
        model.emplace_back(), vector.emplace_back();
        break;
      case 3: {  // copies of other sizes, to and fro
        SteadyVector<std::string> other{text, text};
        if (random() % 2)
          other = vector, vector = other;
        else
          vector = other, model = {text, text};
        break;
      }
      case 4: {
        SteadyVector<std::string> other(vector);
        vector = std::move(other);
        break;
      }
      case 5:
        if (!model.empty()) model.push_back(model[0]), vector.push_back(vector[0]);
        break;
      default:
        model.push_back(text), vector.push_back(text);
    }
    ASSERT_TRUE(std::equal(model.begin(), model.end(), vector.begin(), vector.end())) << step;
    ASSERT_EQ(model.size(), vector.size());
    if (model.size() > 50) model.clear(), vector.clear();
  }
}

TEST(SeatIDSet, IsAscendingWithoutDuplicatesWhateverIsDone) {
  std::mt19937 random(2);
  std::set<SeatID> model;
  SeatIDSet seats;
  const AllocationCounter counter;
  std::size_t ofTheModel = 0;
  for (int step = 0; step < 20000; ++step) {
    const SeatID seat(static_cast<std::uint8_t>(random() % (step < 10000 ? 16 : 256)));
    if (random() % 3 != 0) {
      const bool isNew = model.insert(seat).second;
      ofTheModel += isNew ? 1 : 0;
      ASSERT_EQ(seats.insert(seat), isNew);
    } else {
      ASSERT_EQ(seats.erase(seat), model.erase(seat) == 1);
    }
    ASSERT_EQ(seats.contains(seat), model.count(seat) == 1);
    ASSERT_TRUE(std::equal(seats.begin(), seats.end(), model.begin(), model.end()));
    ASSERT_EQ(seats.size(), model.size());
  }
  EXPECT_LE(counter.calls(), ofTheModel) << "the set allocates";
}

TEST(SeatIDSet, IsEmptiedBeforeItReadsInAnyOrder) {
  SeatIDSet seats{3, 0};
  ASSERT_EQ(decode(seats, hex("04 09 64 09 FF")), "");
  EXPECT_EQ(seats, (SeatIDSet{9, 100, 255}));
  EXPECT_EQ(decode(seats, hex("02 01")), kNumberFails);
}

TEST(SeatIDSet, TellsThatAllSeatsAtOnceCannotTravel) {
  SeatIDSet seats;
  for (unsigned seat = 0; seat < 255; ++seat) seats.insert(SeatID(static_cast<std::uint8_t>(seat)));
  EXPECT_TRUE(seats.fitsOnWire());
  SeatIDSet read;
  ASSERT_EQ(decode(read, encode(seats)), "");
  EXPECT_EQ(read, seats);
  seats.insert(SeatID(255));
  EXPECT_EQ(seats.size(), 256u);
  EXPECT_FALSE(seats.fitsOnWire());
}

TEST(SeatIDSet, ReadsBackItsDatabaseTextOrStaysAsItWas) {
  const SeatIDSet seats{7, 0, 100};
  EXPECT_EQ(seats.toDbText(), R"({"seats":[0,7,100]})");
  SeatIDSet read{1};
  DbSerializableI& stored = read;
  stored.fromDbText(seats.toDbText());
  EXPECT_EQ(read, seats);
  for (const char* bad : {"", "[0]", R"({"seats":[256]})", R"({"seats":[1,"2"]})",
                          R"({"seats":[1]} )"
                          "x"}) {
    EXPECT_THROW(stored.fromDbText(bad), DbTextError) << bad;
    EXPECT_EQ(read, seats);
  }
  stored.fromDbText(SeatIDSet().toDbText());
  EXPECT_TRUE(read.empty());
}

TEST(CardJson, ShowsListsAsListsAndRefusesCardsWithoutAByte) {
  const SDInfo info({kQueenOfHearts}, SeatID(2), RealMoneyType::fromHundredths(5), SDInfo::Scoop);
  EXPECT_EQ(fieldsToJson(info),
            R"({"seatID":2,"money":"0.05","cards":[{"suit":3,"rank":12,"visibility":4}],"winnerType":3})");
  SDInfo read;
  fieldsFromJson(read, fieldsToJson(info));
  EXPECT_EQ(read, info);

  CardVector cards;
  const auto card = [](const char* fields) { return std::string(R"({"cards":[{)") + fields + "}]}"; };
  fieldsFromJson(cards, card(R"("suit":4,"rank":14,"visibility":1)"));  // hidden, and held with its face
  EXPECT_EQ(cards, (CardVector{Card(Suit::Spade, Rank::Ace, Visibility::Hidden)}));
  EXPECT_TRUE(cards.fitsOnWire());
  for (const char* bad : {R"("suit":16,"rank":2,"visibility":4)", R"("suit":1,"rank":16,"visibility":4)",
                          R"("suit":6,"rank":4,"visibility":4)", R"("suit":9,"rank":11,"visibility":3)",
                          R"("suit":1,"rank":2,"visibility":2)", R"("suit":268435457,"rank":2,"visibility":4)"}) {
    EXPECT_THROW(fieldsFromJson(cards, card(bad)), FieldValueError) << bad;
  }
  EXPECT_FALSE(CardVector{Card(Suit{6}, Rank{4})}.fitsOnWire()) << "would be read as its owner's alone";
}

}  // namespace
}  // namespace poker::test
