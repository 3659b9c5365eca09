#include "tools/import/partners.h"

#include <algorithm>

#include "files/partners.h"
#include "textio/record/numbered.h"

namespace varpre {

EfficiencyRow efficiency_row(const Efficiencies& efficiencies, const std::vector<ImportedSpecies>& gas) {
  EfficiencyRow row;
  row.reserve(gas.size());
  for (const ImportedSpecies& species : gas) {
    const auto found = efficiencies.named.find(species.name);
    row.push_back(found == efficiencies.named.end() ? efficiencies.usual : found->second);
  }
  return row;
}

Partners::Partners(const ImportedMechanism& mechanism) : mechanism_(mechanism) {
  std::vector<EfficiencyRow> rows;
  numbers_[EfficiencyRow(mechanism.gas.size(), 1.0)] = 1;
  for (const ImportedReaction& reaction : mechanism.gas_reactions) {
    if (!reaction.efficiencies) continue;
    EfficiencyRow row = efficiency_row(*reaction.efficiencies, mechanism.gas);
    const int next = static_cast<int>(rows.size()) + 2;
    if (numbers_.try_emplace(row, next).second) rows.push_back(std::move(row));
  }
  const auto entries = [&](double usual) {
    std::ptrdiff_t count = 0;
    for (const EfficiencyRow& row : rows) count += count_of(row) - std::count(row.begin(), row.end(), usual);
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

std::string Partners::name_of(const Efficiencies& efficiencies) const {
  return std::string(at(MCOLLI, numbers_.at(efficiency_row(efficiencies, mechanism_.gas))));
}

}  // namespace varpre
