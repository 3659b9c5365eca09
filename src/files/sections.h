#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <string_view>

#include "textio/channel/input.h"
#include "textio/record/text.h"

namespace varpre {

// A section of an input file: the records behind a heading. How it is told from others, where it is looked
// for, and what follows when it is not there.
struct Section {
  enum class Letters : std::uint8_t { as_written, any_case };
  enum class Start : std::uint8_t { first_record, where_it_stands };
  enum class Absence : std::uint8_t {
    ends_the_run,
    is_a_fault,    // the run goes on, and the store file lacks something
    is_a_warning,  // the run goes on with standard values
    is_usual
  };
  // The files that may hold it, as bits.
  enum Files : std::uint8_t { INP = 1, MEC = 2 };

  std::string_view content;  // "the flame conditions"; no two are alike
  std::string_view word;     // what its heading begins with
  std::string_view heading;  // as people write it
  Letters letters = Letters::as_written;
  Start start = Start::first_record;
  Absence absence = Absence::ends_the_run;
  std::uint8_t files = INP;
  std::string_view except = {};        // a heading that begins so, in any case, is another section's
  std::string_view elsewhere = {};     // the heading that other programs give to such a section
  std::string_view asked_for_by = {};  // what makes a run read it, where not every run does
  std::string_view behind = {};        // the content of another one, without which it is not looked for
  bool of_surface = false;             // it is read where there are surface species
  bool data_needed = true;             // of a list of species: they need entries in the databases

  // Whether a record is its heading; beyond the end of a record stand blanks.
  constexpr bool opens_with(std::string_view record) const {
    if (record.empty() || !LSAME(record.front(), word.front())) return false;  // most records
    if (!except.empty() && begins_with(record, except)) return false;
    if (letters == Letters::any_case) return begins_with(record, word);
    return trimmed(record.substr(0, word.size())) == trimmed(word);
  }

  friend constexpr bool operator==(const Section& a, const Section& b) { return a.content == b.content; }
};

// The sections of the input files: what a search, the help for a heading that is missing, and the look at
// text that nobody read know of them.
namespace sections {

using enum Section::Letters;
using enum Section::Start;
using enum Section::Absence;

inline constexpr std::string_view asks_for_particles = "option 'Impuls -5' asks for particle data";
inline constexpr std::string_view asks_for_two_dimensions =
    "option 'PLN2D 1' asks for the two-dimensional sections";

inline constexpr auto all = std::to_array<Section>({
    {.content = "the options", .word = "OPTI", .heading = "OPTIONS"},
    {.content = "the gas-phase species list",
     .word = "Gas Phas",
     .heading = "GAS PHASE",
     .letters = any_case,
     .elsewhere = "SPECIES"},
    {.content = "the surface species list",
     .word = "Surface ",
     .heading = "SURFACE",
     .letters = any_case,
     .absence = is_usual,
     .except = "SURFACE COND"},
    {.content = "the particle species list",
     .word = "PASPECIES",
     .heading = "PASPECIES",
     .letters = any_case,
     .absence = is_usual,
     .data_needed = false},
    {.content = "the mixture on the left",
     .word = "Left",
     .heading = "LEFT BOUNDARY",
     .letters = any_case,
     .absence = is_a_warning},
    {.content = "the mixture on the right",
     .word = "Righ",
     .heading = "RIGHT BOUNDARY",
     .letters = any_case,
     .absence = is_a_warning},
    {.content = "the flame conditions", .word = "COND", .heading = "CONDITIONS"},
    {.content = "the surface conditions",
     .word = "SURFACE COND",
     .heading = "SURFACE CONDITIONS",
     .of_surface = true},
    {.content = "the particle data",
     .word = "PART",
     .heading = "PARTICLES",
     .absence = is_a_fault,
     .asked_for_by = asks_for_particles},
    {.content = "the names of the particle data",
     .word = "PASP",
     .heading = "PASPECIES",
     .start = where_it_stands,
     .absence = is_a_fault,
     .asked_for_by = asks_for_particles,
     .behind = "the particle data"},
    {.content = "the particle fractions",
     .word = "PARi",
     .heading = "PARi",
     .start = where_it_stands,
     .absence = is_a_fault,
     .asked_for_by = asks_for_particles,
     .behind = "the particle data"},
    {.content = "the two-dimensional options",
     .word = "2DOP",
     .heading = "2DOPTIONS",
     .absence = is_a_fault,
     .asked_for_by = asks_for_two_dimensions},
    {.content = "the two-dimensional parameters",
     .word = "2DIN",
     .heading = "2DINPUT",
     .absence = is_a_fault,
     .asked_for_by = asks_for_two_dimensions,
     .behind = "the two-dimensional options"},

    {.content = "the gas-phase mechanism",
     .word = "MECH",
     .heading = "MECHANISM",
     .letters = any_case,
     .start = where_it_stands,
     .files = Section::MEC,
     .elsewhere = "REACTIONS"},
    {.content = "the surface mechanism",
     .word = "SURF",
     .heading = "SURFACE MECHANISM",
     .letters = any_case,
     .start = where_it_stands,
     .files = Section::MEC,
     .of_surface = true},
    {.content = "the collision efficiencies",
     .word = "COLL",
     .heading = "COLLISION EFFICIENCIES",
     .letters = any_case,
     .files = Section::MEC | Section::INP},
    {.content = "the complex reactions",
     .word = "COMP",
     .heading = "COMPLEX REACTIONS",
     .letters = any_case,
     .absence = is_usual,
     .files = Section::MEC},
    {.content = "the photo reactions",
     .word = "PHOT",
     .heading = "PHOTO REACTIONS",
     .letters = any_case,
     .absence = is_usual,
     .files = Section::MEC},
});

// The section with some content; one that the table does not have does not compile.
consteval const Section& named(std::string_view content) {
  const Section* const found = std::ranges::find(all, content, &Section::content);
  if (std::ranges::count(all, content, &Section::content) != 1) throw "no such section, or two";
  return *found;
}

}  // namespace sections

// Where a search ended.
struct Heading {
  bool found = false;
  std::string_view record;  // the heading; when it was not found the last record passed over, or nothing

  explicit operator bool() const { return found; }
};

// Looks for the heading of a section and stands behind it; at the end of the input when there is none. Each
// record passed over is shown to `passed`, which may end the search there by returning false.
Heading find_section(const Section& section, Input& input,
                     const std::function<bool(std::string_view)>& passed = {});

}  // namespace varpre
