#include <examples/holdem/client/terminal/PromotionText.h>

#include <examples/holdem/client/terminal/Text.h>

#include <fmt/format.h>

namespace poker::holdem {

std::string promotionText(const SrvPromoNotify& notice) {
  const int left = notice.getRest();
  const std::string rest = left > 0 ? fmt::format(", {} left", counted(static_cast<std::uint64_t>(left), "hand")) : "";
  switch (notice.getNotifyID()) {
    case SrvPromoNotify::Announced:
      return "A promotion begins soon.";
    case SrvPromoNotify::Started:
      return fmt::format("A promotion has begun: the highest hand wins{}.", rest);
    case SrvPromoNotify::Running:
      return fmt::format("A new highest hand in the promotion{}.", rest);
    case SrvPromoNotify::Finished:
      return "The promotion is over.";
  }
  return "Something has happened in a promotion.";
}

std::string winnerText(const SrvUserWonPromotion& winner) {
  return fmt::format("{} wins the promotion with {}, in hand {}.", escaped(winner.userName()),
                     escaped(winner.handText()), winner.dealID());
}

}  // namespace poker::holdem
