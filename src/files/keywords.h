#pragma once

#include "files/keyword_section.h"

// The keywords of the conditions input: what each means, its standard value, its unit. What is named by its
// label in the store file is passed on as it stands; its meaning is the solver's.
namespace varpre {

// --- flame conditions -------------------------------------------------------------------------------

struct FlameConditions {
  double GE = 0;
  double NG = 0;
  double RI = 0;
  double RO = 0;
  double TSTA = 0;
  double TE = 0;
  double NT = 0;
  double NMAX = 1.0E+30;
  double SE = 0;
  double SW = 0;
  double ST = 0;
  double SOGR = 0;
  double STEP = 0;
  double ATOL = 1.0E-10;
  double RTOL = 1.0E-3;
  double RS = 0;
  double AMPL = 0;
  double SIGM = 1.0;
  double RMAX = 0;
  double ALPH = 0;
  double TSTO = 1.0E+30;
  double MSTO = 1.0E+30;
  double ART = 3.0;
  double RB = 1.0E+30;
  double WFR = 0;
  double WFP = 0;
  double WFU = 0;
  double WFT = 0;
  double VPLU = 0;
  double NGK = 0;
  double OMEG = 0;
};

struct FlameSection {
  using Values = FlameConditions;
  using F = Values;
  static constexpr FormatText record{"(A4,1X,E10.3)"};
  static constexpr Section::Letters letters = Section::Letters::as_written;
  static constexpr std::string_view end = "END ";
  static constexpr std::string_view kinds = "keyword";
  static constexpr auto keywords = std::to_array<Keyword<F>>({
      {"GE  ", &F::GE, "geometry: 0 slab, 1 cylinder, 2 sphere", {}, {}, true},
      {"NG  ", &F::NG, "grid points", {}, {}, true},
      {"RI  ", &F::RI, "inner radius", "m", {0, 1000}, true},
      {"RO  ", &F::RO, "outer radius", "m", {1.0E-6, 5}, true},
      {"TSTA", &F::TSTA, "start of time", "s"},
      {"TE  ", &F::TE, "end of time", "s", {}, true},
      {"NT  ", &F::NT, "time steps", {}, {1}, true},
      {"Nmax", &F::NMAX, "NMAX of the store file", {}, {1}},
      {"SE  ", &F::SE, "energy source: energy", "J", {0}},
      {"SW  ", &F::SW, "energy source: width", "m", {0, 1000}},
      {"ST  ", &F::ST, "energy source: time", "s", {0}},
      {"SOGR", &F::SOGR, "energy source: GRA of the store file"},
      {"STEP", &F::STEP, "step size", "s", {0}},
      {"ATOL", &F::ATOL, "absolute tolerance", {}, {1.0E-30, 1}},
      {"RTOL", &F::RTOL, "relative tolerance", {}, {1.0E-30, 0.5}},
      {"RS  ", &F::RS, "second step size; 0: that of STEP", "s", {0}},
      {"AMPL", &F::AMPL, "initial profile: AM of the store file", "K"},
      {"SIGM", &F::SIGM, "initial profile: SIG of the store file", "m"},
      {"RMAX", &F::RMAX, "initial profile: RM of the store file", "m"},
      {"ALPH", &F::ALPH, "initial profile: ALPHA of the store file"},
      {"TSTO", &F::TSTO, "TSOP of the store file"},
      {"MSTO", &F::MSTO, "MSTOP of the store file"},
      {"ART ", &F::ART, "ART of the store file"},
      {"RB  ", &F::RB, "RB of the store file"},
      {"WFr ", &F::WFR, "weight WFR"},
      {"WFp ", &F::WFP, "weight WFP"},
      {"WFu ", &F::WFU, "weight WFU"},
      {"WFT ", &F::WFT, "weight WFT"},
      {"VPLU", &F::VPLU, "fourth value of the radius record"},
      {"NGK ", &F::NGK, "grid points, second count"},
      {"OMEG", &F::OMEG, "initial profile: OMEGA of the store file", "m"},
  });
};
static_assert(sets_each_member_once(FlameSection::keywords));

// --- surface conditions -----------------------------------------------------------------------------

// In the order of the store file; the last three are the dimensions of the catalyst.
struct SurfaceConditions {
  double TW = 0;
  double SITE = 0;
  double EPSW = 0;
  double EPSA = 0;
  double EPSB = 0;
  double TRAD = 0;
  double POW = 0;
  double RHOZ = 0;
  double RHOA = 0;
  double RHOB = 0;
  double CWIR = 1.0E+30;
  double STFL = 0;
  double CATD = 0;
  double CATB = 0;
  double CATL = 0;
};

// What is required is so in a counter flow, and of no use elsewhere.
struct SurfaceSection {
  using Values = SurfaceConditions;
  using S = Values;
  static constexpr FormatText record{"(A8,1X,E11.4)"};
  static constexpr Section::Letters letters = Section::Letters::as_written;
  static constexpr std::string_view end = "END ";
  static constexpr std::string_view kinds = "keyword";
  static constexpr auto keywords = std::to_array<Keyword<S>>({
      {.word = "TW  ",
       .value = &S::TW,
       .meaning = "wall temperature",
       .unit = "K",
       .usual = {200, 4000},
       .not_once = "NO OR MORE THAN ONE WALL TEMPERATURE (TW) DEFINED"},
      {.word = "SITE",
       .value = &S::SITE,
       .meaning = "site density",
       .unit = "mol/m2",
       .usual = {1.0E-7, 1.0E-3},
       .not_once = "NO OR MORE THAN ONE SITE DENSITY (SITE) DEFINED"},
      {.word = "EPSW",
       .value = &S::EPSW,
       .meaning = "emissivity",
       .usual = {0, 1},
       .not_once = "NO OR MORE THAN ONE EMISIVITY    (EPSW ) DEFINED"},
      {.word = "EPSA",
       .value = &S::EPSA,
       .meaning = "emission coefficient A",
       .not_once = "NO OR MORE THAN ONE EMISS. COEFF. (EPSA) DEFINED"},
      {.word = "EPSB",
       .value = &S::EPSB,
       .meaning = "emission coefficient B",
       .not_once = "NO OR MORE THAN ONE EMISS. COEFF. (EPSB) DEFINED"},
      {.word = "TRAD",
       .value = &S::TRAD,
       .meaning = "TRAD, passed on to the solver as it stands",
       .unit = "K",
       .usual = {0, 5000},
       .not_once = "NO OR MORE THAN ONE TRAD         (TRAD) DEFINED"},
      {.word = "POW ",
       .value = &S::POW,
       .meaning = "power",
       .not_once = "NO OR MORE THAN ONE POWER        (POW) DEFINED"},
      {.word = "RHOZ",
       .value = &S::RHOZ,
       .meaning = "specific resistance",
       .not_once = "NO OR MORE THAN ONE SPEC. RESIST. (RHOZ) DEFINED"},
      {.word = "RHOA",
       .value = &S::RHOA,
       .meaning = "specific resistance, coefficient A",
       .not_once = "NO OR MORE THAN ONE SPEC. RESIST. (RHOA) DEFINED"},
      {.word = "RHOB",
       .value = &S::RHOB,
       .meaning = "specific resistance, coefficient B",
       .not_once = "NO OR MORE THAN ONE SPEC. RESIST. (RHOB) DEFINED"},
      {.word = "CWIR",
       .value = &S::CWIR,
       .meaning = "specific heat",
       .usual = {0},
       .not_once = "NO OR MORE THAN ONE SPEC. HEAT  . (CWIR) DEFINED"},
      {.word = "STFL",
       .value = &S::STFL,
       .meaning = "Stefan flux",
       .not_once = "NO OR MORE THAN ONE Stefan flux . (STFL)INITIALISED"},
      {.word = "CATD",
       .value = &S::CATD,
       .meaning = "thickness of the catalyst",
       .unit = "m",
       .usual = {0, 100},
       .required = true,
       .not_once = "NO OR MORE THAN ONE CAT. THICK. (CATD) DEFINED, NEEDED FOR COUNTER FLOW"},
      {.word = "CATB",
       .value = &S::CATB,
       .meaning = "width of the catalyst",
       .unit = "m",
       .usual = {0, 100},
       .required = true,
       .not_once = "NO OR MORE THAN ONE CAT. WIDTH. (CATB) DEFINED. NEEDED FOR COUNTER FLOW"},
      {.word = "CATL",
       .value = &S::CATL,
       .meaning = "length of the catalyst",
       .unit = "m",
       .usual = {0, 100},
       .required = true,
       .not_once = "NO OR MORE THAN ONE CAT. LENGTH. (CATL) DEFINED. NEEDED FOR COUNTER FLOW"},
  });
};
static_assert(sets_each_member_once(SurfaceSection::keywords));

// --- boundary mixtures ------------------------------------------------------------------------------

struct MixtureConditions {
  double RHO = 0;
  double P = 0;
  double T = 0;
  double H = 0;
  double PHI = 0;
  double G = 0;
  double v = 0;
  double FREQ = 0;
  double FAC = 0;
  double OMEG = 0;
};

// Its records hold amounts of species as well. A keyword wins over a species of the same name.
struct MixtureSection {
  using Values = MixtureConditions;
  using M = Values;
  static constexpr FormatText record{"(A8,1X,E10.2)"};
  static constexpr Section::Letters letters = Section::Letters::any_case;
  static constexpr std::string_view end = "END";
  static constexpr std::string_view kinds = "keyword or species";
  static constexpr auto keywords = std::to_array<Keyword<M>>({
      {"RHO ", &M::RHO, "density, always computed", "kg/m3"},
      {.word = "P   ",
       .value = &M::P,
       .meaning = "pressure",
       .unit = "bar",
       .required = true,
       .factor = 100000.0,
       .stored_unit = "Pa"},
      {"T   ", &M::T, "temperature", "K"},
      {"H(T0)", &M::H, "specific enthalpy, from which T is computed", "J/kg"},
      {"PHI ", &M::PHI, "PHI, passed on to the solver as it stands"},
      {"G   ", &M::G, "G, passed on to the solver as it stands"},
      {"v   ", &M::v, "v, passed on to the solver as it stands"},
      {"FREQ", &M::FREQ, "FREQ, passed on to the solver as it stands"},
      {"FAC ", &M::FAC, "FAC, passed on to the solver as it stands"},
      {"OMEG", &M::OMEG, "OMEG, passed on to the solver as it stands"},
  });
};
static_assert(sets_each_member_once(MixtureSection::keywords));

// --- two-dimensional parameters ---------------------------------------------------------------------

struct TwoDimensionalParameters {
  double UINI = 0;
  double VINI = 0;
  double RI2 = 0;
  double DIST = 0;
  double TMAX = 1.0E+30;
  double HMAX = 1.0E+30;
  double REDF = 1.0;
  double XSOU = 1.0E+30;
  double YSOU = 1.0E+30;
  double GACC = 0;
};

struct TwoDimensionalSection {
  using Values = TwoDimensionalParameters;
  using D = Values;
  static constexpr FormatText record{"(A4,1X,E10.3)"};
  static constexpr Section::Letters letters = Section::Letters::as_written;
  static constexpr std::string_view end = "END";
  static constexpr std::string_view kinds = "keyword";
  static constexpr auto keywords = std::to_array<Keyword<D>>({
      {"UINI", &D::UINI, "UINI, passed on to the solver as it stands"},
      {"VINI", &D::VINI, "VINI, passed on to the solver as it stands"},
      {"RI2 ", &D::RI2, "RI2, passed on to the solver as it stands"},
      {"DIST", &D::DIST, "DIST, passed on to the solver as it stands"},
      {"TMAX", &D::TMAX, "TMAX, passed on to the solver as it stands"},
      {"HMAX", &D::HMAX, "HMAX, passed on to the solver as it stands"},
      {"REDF", &D::REDF, "REDF, passed on to the solver as it stands"},
      {"XSOU", &D::XSOU, "XSOU, passed on to the solver as it stands"},
      {"YSOU", &D::YSOU, "YSOU, passed on to the solver as it stands"},
      {"GACC", &D::GACC, "GACC, passed on to the solver as it stands"},
  });
};
static_assert(sets_each_member_once(TwoDimensionalSection::keywords));

// --- particle fractions -----------------------------------------------------------------------------

struct NoValues {};

// The words are the names of particle species; there is no keyword.
struct ParticleSection {
  using Values = NoValues;
  static constexpr FormatText record{"(A8,1X,E10.2)"};
  static constexpr Section::Letters letters = Section::Letters::as_written;
  static constexpr std::string_view end = "END";
  static constexpr std::string_view kinds = "particle species";
  static constexpr std::array<Keyword<NoValues>, 0> keywords{};
};

// --- all of them ------------------------------------------------------------------------------------

// Whether a word is a keyword of a section.
template <class Description>
constexpr bool is_keyword_of(std::string_view word) {
  return std::ranges::any_of(Description::keywords, [&](const auto& known) {
    if (Description::letters == Section::Letters::as_written) return trimmed(known.word) == word;
    return same_word(word, known.word);
  });
}
constexpr bool is_keyword(std::string_view word) {
  return is_keyword_of<FlameSection>(word) || is_keyword_of<SurfaceSection>(word) ||
         is_keyword_of<MixtureSection>(word) || is_keyword_of<TwoDimensionalSection>(word);
}

}  // namespace varpre
