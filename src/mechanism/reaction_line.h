#pragma once

#include "mechanism/phase.h"
#include "textio/channel/input.h"
#include "textio/findings/listing.h"

namespace varpre {

// A reaction as it is written: the rate parameters are in cm, mol, s and J/mol (read in kJ/mol).
struct ReactionLine {
  Reaction reaction;      // everything but MAT
  SpeciesVector KSPEC{};  // species in order of appearance
  bool reversible = false;
  bool cut = false;                 // it has more names than count, which was told
  double sticking_coefficient = 0;  // as written, of a sticking reaction
};

enum class LineResult { reaction, end_of_mechanism, end_of_file, rejected };

// Reads the next reaction from NFIMEC: keyword lines (END, STIC, MAXI), one free-form equation
// line or two fixed-form records, and the rate-parameter lines that follow it ($, #, @). The unit stands
// behind the last record of the reaction.
//
// At end of file the listing has the warning; a rejected reaction has its message and its echo in the
// listing. Stops the run (RunStop), with its message, at a line without numbers that can be read as E, b and
// A, a reversible reaction with an @ line, and the errors of the scanning routines. `heading` is where the
// mechanism begins, for findings.
LineResult INIMIN(const Phase& phase, const ReactionNames& names, const Place& heading, Input& NFIMEC,
                  Listing& MSGFIL, ReactionLine& line);

}  // namespace varpre
