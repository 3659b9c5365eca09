#include "mechanism/reaction_line.h"

#include <algorithm>
#include <optional>

#include "files/section_findings.h"
#include "files/words.h"
#include "mechanism/foreign_formats.h"
#include "mechanism/mechanism_findings.h"
#include "mechanism/name_findings.h"
#include "textio/channel/run_stop.h"
#include "textio/channel/statement.h"
#include "textio/findings/listing.h"
#include "textio/findings/odd_characters.h"
#include "textio/findings/record_findings.h"
#include "textio/names/scanning.h"
#include "textio/record/number_format.h"

namespace varpre {
namespace {

constexpr int most_names = 10;
constexpr std::string_view delimiter_characters = "+=<>%";
constexpr NameLimits limits{.LSYM = 33, .LDEL = 1};

// Keyword lines of a mechanism.
enum class Keyword { none, END, STIC, MAXI };

// The names of an equation, each with the delimiter behind it (blank when there is none).
struct Equation {
  std::array<SpeciesName, most_names> names;
  std::array<Text<1>, most_names> delimiters;
};

Keyword keyword_of(const Line& line) {
  const auto is = [&](std::string_view word) { return EQUSYM(4, line.view(), word); };
  if (is(words::end)) return Keyword::END;
  if (is(words::sticking)) return Keyword::STIC;
  if (is(words::fixed_form)) return Keyword::MAXI;
  return Keyword::none;
}

constexpr std::string_view line_form =
    "a reaction line holds an equation, then A (cm, mol, s), b and E (kJ/mol)";

constexpr std::string_view comment_form =
    "a comment line begins with ****; \"!\" begins a comment behind a reaction";

[[noreturn]] void stop_with(std::string_view record, std::string_view text, Listing& MSGFIL) {
  write<"(A,A)">(MSGFIL, record, text);
  throw RunStop{};
}

// What an error in a line of a mechanism can be blamed on, besides what stands in it.
struct Context {
  const Section& section;
  const Place& heading;
};

// Reports a line of a single word that looks like a keyword; false, without a finding, for any other.
bool report_keyword(const Place& line, Findings& findings) {
  const std::string_view written = trimmed(line.unit->origin(line.record).text);
  std::string help =
      Nearest(written).offer(words::sticking).offer(words::fixed_form).offer(words::end).help();
  if (help.empty() && is_meant_as_end(written)) help = "did you mean 'END'?";
  if (help.empty()) return false;
  Place place = line;
  place.width = static_cast<int>(written.size());
  findings.error(place, message("unknown keyword '", written, "' in a mechanism"), help);
  return true;
}

// Reports what a line that cannot be read turns out to be: a heading behind a missing END, or the form of
// another program. False, without a finding, where it is neither.
bool report_other_text(const Context& context, const Place& line, Findings& findings) {
  return report_heading_inside(context.section, context.heading, *line.unit, findings) ||
         report_foreign_form(line, findings) || report_stray_record(line, findings) ||
         report_keyword(line, findings) || report_count_of_numbers(line, findings);
}

// A number at the end of a reaction line: its message in the listing, and its name.
struct LineNumber {
  std::string_view record;
  std::string_view name;
};

// Why a token is no number.
std::string number_help(std::string_view token, int column) {
  const std::string help = odd_number_help(token, column);
  if (token.ends_with(',')) return "blanks separate A, b and E, no commas";
  return help.empty() ? std::string(line_form) : help;
}

// Takes the last blank-separated token off a text, which begins in column 1, and reads it as a real number.
double take_last_number(std::string_view& text, const LineNumber& number, const Context& context,
                        const Place& line, Listing& MSGFIL) {
  text = trimmed(text);
  const std::size_t blank = text.rfind(' ');
  const std::string_view token = text.substr(blank == std::string_view::npos ? 0 : blank + 1);
  const std::optional<double> value = read_free_real(token);
  if (!value) {
    Place place = line;
    place.column = static_cast<int>(text.size() - token.size()) + 1;
    place.width = std::max(static_cast<int>(token.size()), 1);
    if (!report_other_text(context, line, MSGFIL.findings)) {
      MSGFIL.findings.error(place,
                            token.empty()
                                ? message("the line has no ", number.name)
                                : message("cannot read the ", number.name, ": '", token, "' is not a number"),
                            number_help(token, place.column));
    }
    stop_with(number.record, token, MSGFIL);
  }
  text.remove_suffix(token.size());
  return *value;
}

// Splits a free-form line: the equation, then A, b and E, separated by blanks. False when the equation has
// more than ten names; it holds the first ten then.
bool RETNAM(const Line& line, const Context& context, Reaction& reaction, Equation& equation,
            Listing& MSGFIL) {
  Place& place = reaction.line;
  std::string_view text = line.view();
  text = text.substr(0, text.find('!'));
  if (text.size() < 2 || trimmed(text).empty()) {
    if (!report_other_text(context, place, MSGFIL.findings)) {
      MSGFIL.findings.error(place, "blank line inside a mechanism",
                            text.size() < line.view().size() ? comment_form : line_form);
    }
    stop_with(" RETNAM empty line", "", MSGFIL);
  }
  reaction.EXA = take_last_number(text, {"   EXA   ", "activation energy E"}, context, place, MSGFIL);
  reaction.TEXP = take_last_number(text, {"   TEXP  ", "temperature exponent b"}, context, place, MSGFIL);
  reaction.AFAC = take_last_number(text, {"   AFAC  ", "pre-exponential factor A"}, context, place, MSGFIL);

  place.width = static_cast<int>(trimmed(text).size());
  Line rest(text);
  NameList list;
  const bool other_arrow = text.find("=>") != text.npos && report_foreign_form(place, MSGFIL.findings);
  const Place* const told = other_arrow ? nullptr : &place;
  const int NL = COMPDE(rest.chars, delimiter_characters, MSGFIL, told);
  RYDEL(rest.first(static_cast<std::size_t>(NL)), limits, delimiter_characters, list, MSGFIL, told);
  for (int i = 1; i <= most_names; ++i) {
    if (i <= list.NSYM()) at(equation.names, i) = at(list.SYMS, i);
    if (i <= list.NDEL()) at(equation.delimiters, i) = at(list.DELS, i);
  }
  return list.NSYM() <= most_names;
}

ReadResult read_fixed_form(Input& NFIMEC, Reaction& reaction, Equation& equation) {
  return read<"(5(A8,A1),/,5(A8,A1),E10.3,F7.1,F10.1)">(NFIMEC, zip(equation.names, equation.delimiters),
                                                        reaction.AFAC, reaction.TEXP, reaction.EXA);
}

// Reports a record that is missing or has an unreadable field; warns of columns that were hardly meant.
void examine(const ReadResult& result, std::string_view record_name, std::string_view field_name,
             const Input& NFIMEC, const Place& line, Findings& findings) {
  if (result.end_of_file()) {
    findings.error(line, message("the file ends before the ", record_name, " of this reaction"));
  } else if (result.is_unreadable()) {
    report_unreadable(findings, NFIMEC, result, field_name);
  } else if (!findings.is_told(here(NFIMEC))) {
    warn_of_columns(findings, NFIMEC, result, [&](int) { return field_name; });
  }
}

// Warns of a blank field before one that is filled, in the record last read: it reads as 0, but the values
// are probably shifted by one.
void warn_of_blank_field(std::span<const double> values, std::initializer_list<FieldColumns> fields,
                         const Input& NFIMEC, Findings& findings) {
  if (std::count(values.begin(), values.end(), 0.0) == 0) return;
  const std::string_view line = NFIMEC.origin(NFIMEC.record_number()).text;
  const FieldColumns* blank = nullptr;
  for (const FieldColumns& field : fields) {
    const bool is_blank = trimmed(columns(line, field.first, field.width)).empty();
    if (is_blank && blank == nullptr) blank = &field;
    if (is_blank || blank == nullptr) continue;
    findings.warning(
        here(NFIMEC, blank->first, blank->width),
        message("columns ", blank->first, "-", blank->last(), " of this record are blank and read as 0"),
        "was a value left out? write 0. where one is 0");
    return;
  }
}

// Reports a comment where falloff parameters are due: a record without a number.
bool report_comment(const Input& NFIMEC, Findings& findings) {
  const std::string_view text = NFIMEC.origin(NFIMEC.record_number()).text;
  return text.find_first_of("0123456789") == text.npos && report_foreign_form(here(NFIMEC), findings);
}

// "$": activation energy that depends on the coverage of a species of the phase.
bool read_coverage_line(const ReactionNames& names, Input& NFIMEC, Reaction& reaction, Findings& findings) {
  Text<1> mark;
  Text<33> species;
  reaction.IARRH = coverage_dependent;
  const ReadResult result =
      read<"(A1,A33,11X,E10.3,F7.1,F10.1)">(NFIMEC, mark, species, reaction.VT4, reaction.VT5, reaction.VT6);
  const SpeciesName name(species.view());
  const auto list = names.species();
  const auto found = std::find(list.begin(), list.end(), name);  // letter case counts here
  const bool unknown = found == list.end();
  // A name that is too long shifts what stands behind it.
  if (result || name.blank() || !unknown) {
    examine(result, "\"$\" record", "a coverage parameter", NFIMEC, reaction.line, findings);
    if (!result) return false;
  }
  reaction.VT6 *= 1000;
  if (name.blank() || unknown) {
    if (findings.follows(findings.place_of(message("unknown species '", name, "'")), "$ record",
                         Findings::Severity::error))
      return false;
    findings.error(here(NFIMEC, 2, 8), message("'", name, "' is not a species of this phase"),
                   name.blank()
                       ? "columns 2-34 hold the species whose coverage counts; its letter case counts"
                       : Nearest(name.view()).offer_all(list).help());
    return false;
  }
  reaction.ICOV = static_cast<int>(found - list.begin()) + 1;
  return true;
}

// "#": two records of falloff parameters.
bool read_falloff_lines(Input& NFIMEC, Reaction& reaction, Findings& findings) {
  Text<1> mark;
  auto& FALL = reaction.FALL;
  reaction.IARRH = falloff;
  ReadResult result = read<"(A1,5X,E10.3,2X,F6.2,2X,F10.2)">(NFIMEC, mark, FALL[0], FALL[1], FALL[2]);
  if (result.is_unreadable() && report_comment(NFIMEC, findings)) return false;
  if (result) warn_of_blank_field(first(FALL, 3), {{7, 10}, {19, 6}, {27, 10}}, NFIMEC, findings);
  examine(result, "first \"#\" record", "a low-pressure parameter", NFIMEC, reaction.line, findings);
  if (!result) return false;
  FALL[2] *= 1000;
  std::string_view second;
  if (NFIMEC.peek(second) && !second.starts_with('#')) {
    findings.error({&NFIMEC, NFIMEC.record_number() + 1},
                   "the second \"#\" record of a falloff reaction is due here",
                   "a falloff reaction has two records that begin with \"#\"");
    return false;
  }
  result = read<"(A1,5X,4(E10.3,2X),F6.2)">(NFIMEC, mark, FALL[3], FALL[4], FALL[5], FALL[6], FALL[7]);
  if (result)
    warn_of_blank_field(behind(FALL, 3, 4), {{7, 10}, {19, 10}, {31, 10}, {43, 10}}, NFIMEC, findings);
  examine(result, "second \"#\" record", "a falloff parameter", NFIMEC, reaction.line, findings);
  return bool(result);
}

// "@": the values of a non-Arrhenius rate, taken as they stand.
bool read_non_arrhenius_line(Input& NFIMEC, Reaction& reaction, Findings& findings) {
  Text<1> mark;
  reaction.IARRH = non_arrhenius;
  const ReadResult result =
      read<"(A1,5X,E10.3,2X,F6.2,2X,F10.2)">(NFIMEC, mark, reaction.VT4, reaction.VT5, reaction.VT6);
  examine(result, "\"@\" record", "a rate value", NFIMEC, reaction.line, findings);
  return bool(result);
}

// The rate-parameter lines behind an equation, if there are any; false after the message.
bool read_rate_lines(const ReactionNames& names, Input& NFIMEC, Reaction& reaction, Listing& MSGFIL) {
  std::string_view record;
  if (!NFIMEC.peek(record)) return true;
  switch (record.empty() ? ' ' : record.front()) {
    case '#':
      if (read_falloff_lines(NFIMEC, reaction, MSGFIL.findings)) return true;
      write<"('1',5X,'Error in input of falloff rate coefficients')">(MSGFIL);
      return false;
    case '$':
      if (read_coverage_line(names, NFIMEC, reaction, MSGFIL.findings)) return true;
      break;
    case '@':
      if (read_non_arrhenius_line(NFIMEC, reaction, MSGFIL.findings)) return true;
      break;
    default: return true;
  }
  write<"('1',5X,'Error in input of non-arrhenius rate coefficients')">(MSGFIL);
  return false;
}

// Warns of two names with nothing but a blank between them, which count as joined by "+", and of a delimiter
// behind the last name.
void warn_of_delimiters(const Equation& equation, const Place& line, Findings& findings) {
  for (int i = 1; i <= most_names; ++i) {
    const SpeciesName& name = at(equation.names, i);
    const Text<1>& delimiter = at(equation.delimiters, i);
    if (name.blank()) continue;
    const SpeciesName next = i < most_names ? at(equation.names, i + 1) : SpeciesName();
    if (delimiter.blank() && !next.blank()) {
      findings.warning(
          locate(line, name.view()),
          message("no \"+\" stands between '", name, "' and '", next, "': they are read as two species"),
          message("write ", name, "+", next));
    } else if (!delimiter.blank() && next.blank() && i < most_names) {
      findings.warning(line, message("the equation ends in \"", delimiter, "\""),
                       "a species may be missing behind it");
    }
  }
}

// Whether there is one.
bool warn_of_second_arrow(const Equation& equation, const Place& line, Findings& findings) {
  const auto& delimiters = equation.delimiters;
  const auto arrows = std::count_if(delimiters.begin(), delimiters.end(),
                                    [](const Text<1>& d) { return d.view() == "=" || d.view() == ">"; });
  if (arrows < 2) return false;
  findings.warning(line,
                   "the equation has more than one arrow: what stands behind the first one are products");
  return true;
}

// Numbers of the ten names, 0 for a blank one: educts negative, from the first "=" or ">" on products
// positive. Finds out whether the reaction is reversible. False, after the message, at an unknown name.
bool resolve_names(const ReactionNames& names, const Equation& equation, ReactionLine& line, Listing& MSGFIL,
                   std::array<int, most_names>& numbers) {
  bool products = false;
  const auto is_arrow = [](char c) { return c == '=' || c == '>'; };
  bool usual = !is_arrow(equation.delimiters.back().chars[0]);  // one arrow, and all names joined
  int before = 0;                                               // the number before
  for (int i = 1; i <= most_names; ++i) {
    const SpeciesName& name = at(equation.names, i);
    const int number = name.blank() ? 0 : names.find(name);
    if (number == 0 && !name.blank()) {
      write<"('0',5X,'UNKNOWN SPECIES -',A,'-IN THE FOLLOWING REACTION')">(MSGFIL, name);
      report_unknown(name, names, line.reaction.line, MSGFIL.findings);
      return false;
    }
    if (i > 1) {
      const char delimiter = at(equation.delimiters, i - 1).chars[0];
      const bool apart = before != 0 && (delimiter == ' ') != (number == 0);
      usual = usual && !apart && !(products && is_arrow(delimiter));
      if (delimiter == '=') line.reversible = true;
      if (line.reversible && line.reaction.IARRH == non_arrhenius) {
        MSGFIL.findings.error(line.reaction.line, "a reaction with an \"@\" record cannot be reversible",
                              "write \">\" instead of \"=\"");
        stop_with(" REVERSE REACTION NOT ALLOWED FOR IARRH=4", "", MSGFIL);
      }
      products = products || is_arrow(delimiter);
    }
    at(numbers, i) = products ? number : -number;
    before = number;
  }
  if (!usual && !warn_of_second_arrow(equation, line.reaction.line, MSGFIL.findings)) {
    warn_of_delimiters(equation, line.reaction.line, MSGFIL.findings);
  }
  return true;
}

// Sticking reactions: A is a sticking coefficient, b and E have no meaning. False, after the message, when
// the first name is a collision partner.
bool make_sticking(const ReactionNames& names, const SpeciesName& first, ReactionLine& line,
                   Listing& MSGFIL) {
  Reaction& reaction = line.reaction;
  const bool explained =
      reaction.AFAC > 1 || MSGFIL.findings.is_told({reaction.line.unit, reaction.line.record - 1});
  if ((reaction.EXA != 0 || reaction.TEXP != 0) && !explained) {
    MSGFIL.findings.warning(place_of_parameters(reaction.line, 1, 2),
                            message("b and E of a sticking reaction are not used (", reaction.TEXP, " and ",
                                    reaction.EXA / 1000, " kJ/mol here)"),
                            "A is the sticking coefficient; b is set to 0.5 and E to 0");
  }
  reaction.EXA = 0;
  reaction.TEXP = 0.5;
  reaction.ISTICK = last_of_name(names.species(), first);
  if (reaction.ISTICK == 0) {
    write<"('1',5X,'ERROR - STICKING SPECIES IS A COLLISION PARTNER')">(MSGFIL);
    MSGFIL.findings.error(locate(reaction.line, first.view()),
                          message("'", first, "' cannot stick: it is no species"),
                          "the first name of a sticking reaction is the gas species that sticks");
    return false;
  }
  line.sticking_coefficient = reaction.AFAC;
  reaction.AFAC = reaction.AFAC / (1 - 0.5 * reaction.AFAC);
  return true;
}

// Sorts the numbered names into the slots of the phase; false, after the message, when there are none or too
// many.
bool collect(const Phase& phase, std::span<const int> numbers, const Place& line, SpeciesVector& KSPEC,
             Listing& MSGFIL) {
  const int MAXE = phase.MAXE;
  const auto take = [&](int sign, int slots_before) {
    int count = 0;
    for (const int number : numbers) {
      if (number * sign <= 0) continue;
      if (++count <= MAXE) at(KSPEC, slots_before + count) = number * sign;
    }
    return count;
  };
  const auto report = [&](std::string_view what) {
    const std::string_view text = line.unit->origin(line.record).text;
    const bool no_arrow = text.find_first_of("=>") == text.npos;
    // The rest of a line that was broken in two.
    if (no_arrow &&
        MSGFIL.findings.follows({line.unit, line.record - 1}, "further line", Findings::Severity::error))
      return false;
    MSGFIL.findings.error(line, what,
                          no_arrow ? std::string("no \"=\" or \">\" stands between educts and products")
                                   : message("a reaction of this phase has 1 to ", MAXE, " educts and 1 to ",
                                             MAXE, " products, separated by \"=\" or \">\""));
    return false;
  };
  const int educts = take(-1, 0);
  if (educts == 0) {
    write<"('1',5X,'NO EDUCTS IN THE FOLLOWING REACTION:')">(MSGFIL);
    return report("the reaction has no educts");
  }
  if (educts > MAXE) {
    write<"('1',5X,'MORE THAN 3 EDUCTS IN THE FOLLOWING REACTION:')">(MSGFIL);
    return report(message("the reaction has ", educts, " educts"));
  }
  const int products = take(+1, MAXE);
  if (products == 0) {
    write<"('1',5X,'NO PRODUCTS IN THE FOLLOWING REACTION:')">(MSGFIL);
    return report("the reaction has no products");
  }
  if (products > MAXE) {
    write<"('1',5X,'MORE THAN 3 PRODUCTS IN THE FOLLOWING REACTION:')">(MSGFIL);
    return report(message("the reaction has ", products, " products"));
  }
  return true;
}

// Reads the equation and its A, b and E (J/mol) in either form; false after the message.
bool read_equation(const Line& line, bool fixed_form, const Context& context, Input& NFIMEC,
                   Reaction& reaction, Equation& equation, Listing& MSGFIL) {
  bool readable = true;
  bool names_fit = true;
  if (fixed_form) {
    reaction.line = {&NFIMEC, NFIMEC.record_number() + 1, 1, 45};
    const ReadResult result = read_fixed_form(NFIMEC, reaction, equation);
    if (result.end_of_file()) reaction.line = here(NFIMEC);
    examine(result, "two fixed-form records", "a rate parameter", NFIMEC, reaction.line, MSGFIL.findings);
    readable = bool(result);
    reaction.MARK = equation.delimiters.back().view() == "*";
  } else {
    reaction.line = here(NFIMEC, 1, static_cast<int>(trimmed(line.view()).size()));
    names_fit = RETNAM(line, context, reaction, equation, MSGFIL);
  }
  reaction.EXA *= 1000;
  if (!readable) write<"('0',5X,'ERROR - INCORRECT INPUT OF REACTION ')">(MSGFIL);
  if (!names_fit) {
    write<"('1',5X,'MORE THAN 10 NAMES IN THE FOLLOWING REACTION:')">(MSGFIL);
    MSGFIL.findings.error(reaction.line, message("the reaction has more than ", most_names, " names"));
  }
  return readable && names_fit;
}

// Warns of a line STIC that stands twice, or where nothing can stick.
void warn_of_sticking_line(const Phase& phase, bool again, const Input& NFIMEC, Findings& findings) {
  if (&phase == &Phase::gas) {
    findings.warning(here(NFIMEC, 1, 4), "STIC stands in the gas-phase mechanism, where nothing sticks",
                     "it makes the A of the next reaction a sticking coefficient");
  } else if (again) {
    findings.warning(here(NFIMEC, 1, 4), "STIC stands twice in front of one reaction",
                     "is a reaction missing between the two?");
  }
}

void echo(const Equation& equation, const Reaction& reaction, Listing& MSGFIL) {
  write<"(1X,79('='),/,1X,5(A,A1),E10.3,F7.1,-3PF10.1,/,79('='))">(
      MSGFIL, zip(std::span(equation.names).first(5), std::span(equation.delimiters).first(5)), reaction.AFAC,
      reaction.TEXP, reaction.EXA);
}

}  // namespace

LineResult INIMIN(const Phase& phase, const ReactionNames& names, const Place& heading, Input& NFIMEC,
                  Listing& MSGFIL, ReactionLine& line) {
  line = {};
  Line text;
  Keyword keyword;
  bool sticking = false;
  do {
    if (!read<"(A)">(NFIMEC, text)) {  // a lost END may mean lost reactions
      write<"(5X,'Warning In species input: No heading, ','no end card, or missing data')">(MSGFIL);
      return LineResult::end_of_file;
    }
    keyword = keyword_of(text);
    if (keyword == Keyword::END) return LineResult::end_of_mechanism;
    if (keyword == Keyword::STIC) warn_of_sticking_line(phase, sticking, NFIMEC, MSGFIL.findings);
    sticking = sticking || keyword == Keyword::STIC;
  } while (keyword == Keyword::STIC);

  Reaction& reaction = line.reaction;
  Equation equation;
  std::array<int, most_names> numbers{};
  if (read_equation(text, keyword == Keyword::MAXI, {phase.section, heading}, NFIMEC, reaction, equation,
                    MSGFIL) &&
      read_rate_lines(names, NFIMEC, reaction, MSGFIL) &&
      resolve_names(names, equation, line, MSGFIL, numbers) &&
      (!sticking || make_sticking(names, equation.names[0], line, MSGFIL)) &&
      collect(phase, first(numbers, phase.most_names), reaction.line, line.KSPEC, MSGFIL)) {
    line.cut = std::any_of(numbers.begin() + phase.most_names, numbers.end(), [](int k) { return k != 0; });
    if (line.cut) {
      MSGFIL.findings.warning(reaction.line,
                              message("only the first ", phase.most_names, " names of this reaction count"));
    }
    return LineResult::reaction;
  }
  echo(equation, reaction, MSGFIL);
  return LineResult::rejected;
}

}  // namespace varpre
