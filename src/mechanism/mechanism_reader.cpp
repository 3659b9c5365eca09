#include "mechanism/mechanism_reader.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "files/section_findings.h"
#include "files/store_records.h"
#include "files/words.h"
#include "mechanism/duplicates.h"
#include "mechanism/mechanism_findings.h"
#include "mechanism/rate_findings.h"
#include "mechanism/reaction_line.h"
#include "mechanism/reaction_listing.h"
#include "mechanism/reaction_pointers.h"
#include "mechanism/reverse_reaction.h"
#include "textio/channel/run_stop.h"
#include "textio/channel/statement.h"
#include "textio/findings/listing.h"
#include "textio/findings/record_findings.h"
#include "textio/names/scanning.h"
#include "textio/record/number_format.h"

namespace varpre {
namespace {

// Reads reactions and generates their reverses.
class Reader {
 public:
  Reader(const Phase& phase, const SpeciesView& species, int NSURF, const ReactionNames& names,
         const MechanismOptions& options, Input& NFIMEC, Listing& MSGFIL, std::vector<Reaction>& reactions)
      : phase_(phase),
        species_(species),
        fit_(species.fit),
        balance_(species, NSURF),
        rate_check_(phase, names, NSURF, species.fit, MSGFIL.findings),
        reverse_check_(species.fit),
        names_(names),
        options_(options),
        NFIMEC_(NFIMEC),
        MSGFIL_(MSGFIL),
        reactions_(reactions),
        duplicates_(options.most_reactions) {
    reactions_.reserve(static_cast<std::size_t>(options.most_reactions));
  }

  // All reactions up to the END line; false after the message, or RunStop (INIMIN). `heading` is where they
  // begin. Behind a line that is rejected the others are read for what may be wrong with them.
  bool read_all(const Place& heading) {
    GoingOn going_on(MSGFIL_);
    std::optional<RunStop> stop;
    for (bool more = true; more;) {
      ReactionLine line;
      switch (next_line(heading, line, going_on, stop)) {
        case LineResult::rejected: more = going_on.behind_error() && pass_rate_records(); break;
        case LineResult::end_of_file:
          report_not_closed(phase_.section, heading, MSGFIL_.findings);
          going_on.behind_error();
          more = false;
          break;
        case LineResult::end_of_mechanism: more = false; break;
        case LineResult::reaction:
          if (take(line)) break;
          going_on.behind_error();
          more = false;
      }
    }
    if (!going_on.failed()) write<"(' ',2X)">(MSGFIL_);
    balance_.report(phase_, species_, MSGFIL_.findings);
    rate_check_.report(heading);
    if (stop) throw RunStop(*stop);
    if (going_on.failed()) return false;
    reverse_check_.report(MSGFIL_.findings);
    warn_of_long_listing();
    return true;
  }

 private:
  // A line that stops the run counts as rejected; when it is the first one, the run stops when all have been
  // read.
  LineResult next_line(const Place& heading, ReactionLine& line, const GoingOn& going_on,
                       std::optional<RunStop>& first_stop) {
    try {
      return INIMIN(phase_, names_, heading, NFIMEC_, MSGFIL_, line);
    } catch (const RunStop& stop) {
      if (!going_on.failed()) first_stop = stop;
      return LineResult::rejected;
    }
  }

  // Passes the records of rate parameters behind a line that was rejected, and one that is told of. False
  // where another section begins.
  bool pass_rate_records() {
    const std::string_view text = NFIMEC_.origin(NFIMEC_.record_number()).text;
    const Section* const opened = section_of(text, Section::MEC);
    if ((opened != nullptr && *opened != phase_.section) || is_meant_as_end(text)) return false;
    for (std::string_view record; NFIMEC_.peek(record);) {
      const bool told = MSGFIL_.findings.is_told({&NFIMEC_, NFIMEC_.record_number() + 1});
      const bool reaction = record.find_first_of("=>") != record.npos;
      if (!words::is_rate_record(record) && (!told || reaction || is_meant_as_end(record))) break;
      NFIMEC_.next(record);
    }
    return true;
  }

  // A reaction that was read, and its reverse; false after the message.
  bool take(ReactionLine& line) {
    line.reaction.MAT = ISTDEC(line.KSPEC, phase_.MAXE);
    if (!append(line.reaction, line.KSPEC)) return false;
    balanced_ = !line.cut && balance_.check(phase_, line.reaction);
    if (balanced_) rate_check_.examine(line);
    return !line.reversible || append_reverse(phase_.exchanged(line.KSPEC));
  }

  bool append(const Reaction& reaction, const SpeciesVector& KSPEC) {
    if (!room_for_one(reaction.line)) return false;
    reactions_.push_back(reaction);
    const int NR = count_of(reactions_);
    MXIMAN(phase_, names_, NR, KSPEC, reaction, MSGFIL_);
    bool first = true;
    duplicates_.add(reactions_, [&](int j) {
      write<"('0',7X,'WARNING:    REACTION ',I5,' IS EQUAL TO REACTION ',I5)">(MSGFIL_, NR, j);
      ++equal_pairs_;
      const Reaction& earlier = at(reactions_, j);
      if (first && reaction.line != earlier.line && !is_meant_as_duplicate(reaction.line)) {
        warn_of_duplicate(reaction, earlier);
      }
      first = false;
    });
    return true;
  }

  // One warning a line: a reverse that equals another one says nothing new, nor one that has no meaning.
  void warn_of_duplicate(const Reaction& reaction, const Reaction& earlier) {
    if (reverse_told(reaction) || reverse_told(earlier)) return;
    MSGFIL_.findings.warning(
        reaction.line, "the reaction, or its reverse, is in the mechanism already",
        message("the other one stands in line ", earlier.line.unit->origin(earlier.line.record).line,
                "; if both are meant, write ! dup at the end of this line"));
  }

  // Of a sticking or coverage-dependent reaction that is reversible it was told that its reverse is wrong.
  bool reverse_told(const Reaction& reaction) const {
    const bool of_surface = reaction.ISTICK != 0 || reaction.IARRH == coverage_dependent;
    return of_surface && MSGFIL_.findings.is_told(reaction.line) &&
           reaction.line.unit->origin(reaction.line.record).text.find('=') != std::string_view::npos;
  }

  void warn_of_long_listing() {
    constexpr int usual_pairs = 1000;
    if (equal_pairs_ <= usual_pairs) return;
    MSGFIL_.findings.warning(reactions_.back().line,
                             message(equal_pairs_, " pairs of equal reactions make the listing long"),
                             "each reaction is listed with every earlier one that equals it");
  }

  // The reverse of the last reaction; a forward reaction whose reverse the solver computes is marked as such.
  bool append_reverse(const SpeciesVector& KSPEC) {
    if (!room_for_one(reactions_.back().line)) return false;
    Reaction& forward = reactions_.back();
    Reaction reverse;
    if (options_.solver_reverses) {
      if (forward.IARRH == arrhenius) forward.IARRH = reversible_arrhenius;
      reverse.IARRH = reverse_of(forward.IARRH);
    } else if (forward.IARRH == falloff) {
      reverse.IARRH = reverse_of(falloff);
    } else {
      reverse = INIMRP(phase_, forward, fit_, MSGFIL_);
      if (forward.IARRH == arrhenius && balanced_)
        reverse_check_.compare(phase_, forward, reverse, MSGFIL_.findings);
    }
    reverse.line = forward.line;
    reverse.ICOV = forward.ICOV;
    reverse.MARK = forward.MARK;
    reverse.MAT = phase_.exchanged(forward.MAT);
    return append(reverse, KSPEC);
  }

  bool room_for_one(const Place& line) {
    if (count_of(reactions_) < options_.most_reactions) return true;
    write<"(' ',5X,'ERROR - More than ',I5,' reactions')">(MSGFIL_, options_.most_reactions);
    MSGFIL_.findings.error(line,
                           message("the mechanism has more than ", options_.most_reactions, " reactions"),
                           "generated reverse reactions count");
    return false;
  }

  const Phase& phase_;
  SpeciesView species_;
  std::span<const ThermoFit> fit_;
  ElementBalance balance_;
  RateCheck rate_check_;
  ReverseRateCheck reverse_check_;
  const ReactionNames& names_;
  const MechanismOptions& options_;
  Input& NFIMEC_;
  Listing& MSGFIL_;
  std::vector<Reaction>& reactions_;
  Duplicates duplicates_;
  int equal_pairs_ = 0;
  bool balanced_ = true;  // the reaction read last
};

// Stands behind the heading, which is searched behind a record; echoes the records passed over. False, after
// the message, when there is none.
bool find_heading(const Section& section, int behind_record, Input& NFIMEC, Listing& MSGFIL,
                  Text<80>& record) {
  NFIMEC.rewind();
  for (std::string_view before; NFIMEC.record_number() < behind_record && NFIMEC.pass(before);) {
  }
  const auto echo = [&](std::string_view passed) {
    write<"(' ',A72)">(MSGFIL, Text<80>(passed));
    return true;
  };
  const Heading heading = find_section(section, NFIMEC, echo);
  record = heading.record;
  if (heading) return true;
  write<"('1',5X,' no mechanism available (string \"MECH\" not found)')">(MSGFIL);
  report_missing(
      section, NFIMEC, MSGFIL.findings,
      behind_record == 0 ? std::string() : message(" behind line ", NFIMEC.origin(behind_record).line));
  return false;
}

// Warns of a reaction directly behind END, and returns where it stands.
Place warn_of_early_end(const Input& NFIMEC, Findings& findings) {
  std::string_view text;
  if (!NFIMEC.peek(text) || text.find_first_of("=>") == std::string_view::npos) return {};
  const std::string_view last = trimmed(text).substr(trimmed(text).rfind(' ') + 1);
  if (!read_free_real(last)) return {};
  const Place place{&NFIMEC, NFIMEC.record_number() + 1, 1, static_cast<int>(trimmed(text).size())};
  findings.warning(
      place, "this reaction and those behind it are not read",
      message("END in line ", NFIMEC.origin(NFIMEC.record_number()).line, " closes the mechanism"));
  return place;
}

void list_header(const Text<80>& heading, Listing& MSGFIL) {
  const Text<6> blanks;
  write<"(' ',3X,A60,A,'A',5X,'T-Exp.',4X,'E',/,A,60X,'(cm,mol,s)',2X,'(-)',2X,'(kJ/mol)')">(MSGFIL, heading,
                                                                                             blanks, blanks);
}

std::vector<int> pair_codes(const Phase& phase, std::span<const Reaction> reactions) {
  std::vector<int> IREVER(reactions.size(), 0);
  for (std::size_t k = 1; k < reactions.size(); ++k) {
    if (reactions[k].MAT != phase.exchanged(reactions[k - 1].MAT)) continue;
    IREVER[k] = 2;
    IREVER[k - 1] = 1;  // may overwrite the code of the pair before
  }
  for (std::size_t k = 0; k < reactions.size(); ++k) {
    IREVER[k] = reactions[k].MARK ? -(IREVER[k] + 1) : IREVER[k] + 1;
  }
  return IREVER;
}

void list_pairs(std::span<const int> IREVER, Listing& MSGFIL) {
  constexpr std::size_t pairs_per_record = 5;
  std::vector<std::array<int, 2>> pairs;
  for (std::size_t k = 0; k < IREVER.size(); ++k) {
    const int number = static_cast<int>(k) + 1;
    if (std::abs(IREVER[k]) == 2) pairs.push_back({number, number + 1});
  }
  if (pairs.empty()) return;
  write<"(' ','   Pairs of forward and reverse reactions:  ')">(MSGFIL);
  for (std::size_t first = 0; first < pairs.size(); first += pairs_per_record) {
    const std::size_t count = std::min(pairs_per_record, pairs.size() - first);
    std::array<Text<1>, pairs_per_record> open;
    std::array<Text<1>, pairs_per_record> comma;
    std::array<Text<1>, pairs_per_record> close;
    std::array<int, pairs_per_record> forward{};
    std::array<int, pairs_per_record> reverse{};
    for (std::size_t i = 0; i < count; ++i) {
      open[i] = "(";
      forward[i] = pairs[first + i][0];
      comma[i] = ",";
      reverse[i] = pairs[first + i][1];
      close[i] = ")";
    }
    const auto part = [&](auto& array) { return std::span(array).first(count); };
    write<"('      ',5(A1,I4,A1,I4,A1,3X))">(
        MSGFIL, zip(part(open), part(forward), part(comma), part(reverse), part(close)));
  }
}

void find_third_bodies(std::span<const Reaction> reactions, int NS, Mechanism& mechanism) {
  for (const Reaction& reaction : reactions) {
    for (const int number : reaction.MAT) {
      if (number > NS) at(mechanism.used, number - NS) = true;
    }
  }
  mechanism.NCOLL = 2;
  for (int c = 3; c <= partner_count; ++c) {
    if (at(mechanism.used, c)) mechanism.NCOLL = c;
  }
}

void find_inert_species(int NS, Mechanism& mechanism) {
  mechanism.INERT.assign(static_cast<std::size_t>(NS), true);
  for (const Reaction& reaction : mechanism.reactions) {
    for (const int number : reaction.MAT) {
      if (number >= 1 && number <= NS) at(mechanism.INERT, number) = false;
    }
  }
}

// Warns of inert species which the solver does not take for inert.
void warn_of_misplaced(const Phase& phase, std::span<const SpeciesName> names, const Place& first,
                       Findings& findings) {
  if (names.empty() || !first) return;
  findings.warning(
      locate(first, names.front().view()),
      message("species that occur in no reaction of ", phase.section.content,
              " stand before others: ", list_of(names)),
      "the store file tells only how many species are inert: the solver takes the last ones of the list");
}

void list_inert_species(const Phase& phase, const SpeciesView& species, int NSURF, const Mechanism& mechanism,
                        Listing& MSGFIL) {
  const int NS = count_of(mechanism.INERT);
  int NINERT = 0;
  for (int s = 1; s <= NS; ++s) {
    if (!at(mechanism.INERT, s)) continue;
    ++NINERT;
    write<"(' ',7X,'INERT SPECIES : ',5(A,1X))">(MSGFIL, at(species.SYMB, s));
  }
  if (NINERT == 0) write<"(' ',7X,'NO INERT SPECIES')">(MSGFIL);
  // A gas species cannot stand anywhere else in the list of a surface mechanism.
  const int first_movable = &phase == &Phase::surface ? NS - NSURF + 1 : 1;
  std::vector<SpeciesName> misplaced;
  Place first;
  for (int s = 1; s <= NS - NINERT; ++s) {
    if (!at(mechanism.INERT, s)) continue;
    write<"(' ',1X,'WARNING: INERT SPECIES ',A,' NOT AT END OF LIST')">(MSGFIL, at(species.SYMB, s));
    if (s < first_movable) continue;
    if (misplaced.empty()) first = at(species.listed, s);
    misplaced.push_back(at(species.SYMB, s));
  }
  if (!MSGFIL.file.dropping && !mechanism.behind_end)
    warn_of_misplaced(phase, misplaced, first, MSGFIL.findings);
}

// Reports the reactions whose rate cannot be written; the first of them ends the run.
void report_not_finite(std::span<const Reaction> reactions, Findings& findings) {
  for (const Reaction& r : reactions) {
    if (std::isfinite(r.AFAC) && std::isfinite(r.EXA)) continue;
    findings.error(r.line, "the rate parameters of this reaction are not finite",
                   "A of a sticking reaction must be less than 2; other values must not be too large");
    return;
  }
}

void write_reactions(const Phase& phase, const Mechanism& mechanism, StoreFile& NFISTO) {
  write<store_records::reaction_count>(NFISTO, mechanism.NR());
  write<store_records::partner_count>(NFISTO, mechanism.NCOLL);
  for (const Reaction& r : mechanism.reactions) phase.write(r, NFISTO);
}

}  // namespace

bool GENMEC(const Phase& phase, const SpeciesView& species, int NSURF, const ReactionNames& names,
            const MechanismOptions& options, Input& NFIMEC, Listing& MSGFIL, StoreFile& NFISTO,
            Mechanism& mechanism) {
  mechanism = {};
  Text<80> heading;
  if (!find_heading(phase.section, options.behind_record, NFIMEC, MSGFIL, heading)) return false;
  const Place place = here(NFIMEC, 1, static_cast<int>(trimmed(heading.view()).size()));
  list_header(heading, MSGFIL);
  mechanism.complete =
      Reader(phase, species, NSURF, names, options, NFIMEC, MSGFIL, mechanism.reactions).read_all(place);
  if (!mechanism.complete) return false;
  mechanism.behind_end = warn_of_early_end(NFIMEC, MSGFIL.findings);

  const int NS = names.NS();
  mechanism.IREVER = pair_codes(phase, mechanism.reactions);
  list_pairs(mechanism.IREVER, MSGFIL);
  find_third_bodies(mechanism.reactions, NS, mechanism);
  find_inert_species(NS, mechanism);
  list_inert_species(phase, species, NSURF, mechanism, MSGFIL);
  if (!third_bodies_balance(phase, mechanism.reactions, NS, MSGFIL)) return false;
  for (Reaction& reaction : mechanism.reactions) reaction.AFAC = phase.in_SI_units(reaction, NS, NSURF);
  report_not_finite(mechanism.reactions, MSGFIL.findings);
  write_reactions(phase, mechanism, NFISTO);
  if (!set_pointers(phase, NS, options.most_pointers, mechanism, MSGFIL)) return false;
  write_pointers(mechanism, NFISTO);
  return true;
}

}  // namespace varpre
