#include "tools/import/partners.h"

#include <algorithm>

#include "mechanism/reaction.h"

namespace varpre {

Partners::Partners(const ImportedMechanism& mechanism, Findings& findings) : mechanism_(mechanism) {
  std::vector<Row> rows;
  numbers_[Row(mechanism.gas.size(), 1.0)] = 1;
  for (const ImportedReaction& reaction : mechanism.gas_reactions) {
    if (!reaction.efficiencies) continue;
    const Row row = row_of(*reaction.efficiencies);
    const int next = static_cast<int>(rows.size()) + 2;
    if (!numbers_.try_emplace(row, std::min(next, partner_count)).second) continue;
    if (next > partner_count) {
      findings.error(reaction.place,
                     message("this reaction needs one more set of efficiencies than can be held"),
                     message("at most ", partner_count - 1, " different sets can be"));
      return;
    }
    rows.push_back(row);
  }
  const auto entries = [&](double usual) {
    std::ptrdiff_t count = 0;
    for (const Row& row : rows) count += count_of(row) - std::count(row.begin(), row.end(), usual);
    return count;
  };
  usual_ = entries(1) <= entries(0) ? 1 : 0;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    Partner partner{std::string(at(MCOLLI, static_cast<int>(i) + 2)), {}};
    for (std::size_t s = 0; s < rows[i].size(); ++s) {
      if (rows[i][s] != usual_) partner.efficiencies.emplace_back(mechanism.gas[s].name, rows[i][s]);
    }
    // A definition names one species at least.
    if (partner.efficiencies.empty())
      partner.efficiencies.emplace_back(mechanism.gas.front().name, rows[i].front());
    all_.push_back(std::move(partner));
  }
}

Partners::Row Partners::row_of(const Efficiencies& efficiencies) const {
  Row row;
  for (const ImportedSpecies& species : mechanism_.gas) {
    const auto found = efficiencies.named.find(species.name);
    row.push_back(found == efficiencies.named.end() ? efficiencies.usual : found->second);
  }
  return row;
}

std::string Partners::name_of(const Efficiencies& efficiencies) const {
  const auto found = numbers_.find(row_of(efficiencies));
  return std::string(at(MCOLLI, found == numbers_.end() ? 1 : found->second));
}

}  // namespace varpre
