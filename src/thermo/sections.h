#pragma once

#include <array>

#include "textio/channel/section.h"

// The sections of the input files: what a search, the help for a heading that is missing, and the look at
// text that nobody read know of them.
namespace varpre::sections {

using enum Section::Letters;
using enum Section::Start;
using enum Section::Absence;
inline constexpr auto INP = Section::INP;
inline constexpr auto MEC = Section::MEC;

inline constexpr Section options{"OPTI",       "OPTIONS", "the options", as_written, first_record,
                                 ends_the_run, INP};
inline constexpr Section gas_species{"Gas Phas", "GAS PHASE",  "the gas-phase species list",
                                     any_case,   first_record, ends_the_run,
                                     INP,        {},           "SPECIES"};
inline constexpr Section surface_species{
    "Surface ", "SURFACE", "the surface species list", any_case, first_record, is_usual, INP, "SURFACE COND"};
inline constexpr Section particle_species{
    "PASPECIES", "PASPECIES", "the particle species list", any_case, first_record, is_usual, INP};
inline constexpr Section left_mixture{
    "Left", "LEFT BOUNDARY", "the mixture on the left", any_case, first_record, is_a_warning, INP};
inline constexpr Section right_mixture{
    "Righ", "RIGHT BOUNDARY", "the mixture on the right", any_case, first_record, is_a_warning, INP};
inline constexpr Section flame_conditions{
    "COND", "CONDITIONS", "the flame conditions", as_written, first_record, ends_the_run, INP};
inline constexpr Section surface_conditions{"SURFACE COND",
                                            "SURFACE CONDITIONS",
                                            "the surface conditions",
                                            as_written,
                                            first_record,
                                            ends_the_run,
                                            INP};
inline constexpr Section particle_data{"PART",     "PARTICLES", "the particle data", as_written, first_record,
                                       is_a_fault, INP};
inline constexpr Section particle_names{
    "PASP", "PASPECIES", "the names of the particle data", as_written, where_it_stands, is_a_fault, INP};
inline constexpr Section particle_fractions{
    "PARi", "PARi", "the particle fractions", as_written, where_it_stands, is_a_fault, INP};
inline constexpr Section two_dimensional_options{
    "2DOP", "2DOPTIONS", "the two-dimensional options", as_written, first_record, is_a_fault, INP};
inline constexpr Section two_dimensional_input{
    "2DIN", "2DINPUT", "the two-dimensional parameters", as_written, first_record, is_a_fault, INP};

inline constexpr Section gas_mechanism{
    "MECH", "MECHANISM", "the gas-phase mechanism", any_case, where_it_stands, ends_the_run, MEC,
    {},     "REACTIONS"};
inline constexpr Section surface_mechanism{
    "SURF", "SURFACE MECHANISM", "the surface mechanism", any_case, where_it_stands, ends_the_run, MEC};
inline constexpr Section efficiencies{
    "COLL",   "COLLISION EFFICIENCIES", "the collision efficiencies", any_case, first_record, ends_the_run,
    MEC | INP};
inline constexpr Section complex_reactions{
    "COMP", "COMPLEX REACTIONS", "the complex reactions", any_case, first_record, is_usual, MEC};
inline constexpr Section photo_reactions{
    "PHOT", "PHOTO REACTIONS", "the photo reactions", any_case, first_record, is_usual, MEC};

inline constexpr std::array<const Section*, 18> all{&options,
                                                    &gas_species,
                                                    &surface_species,
                                                    &particle_species,
                                                    &left_mixture,
                                                    &right_mixture,
                                                    &flame_conditions,
                                                    &surface_conditions,
                                                    &particle_data,
                                                    &particle_names,
                                                    &particle_fractions,
                                                    &two_dimensional_options,
                                                    &two_dimensional_input,
                                                    &gas_mechanism,
                                                    &surface_mechanism,
                                                    &efficiencies,
                                                    &complex_reactions,
                                                    &photo_reactions};

}  // namespace varpre::sections
