#pragma once

#include "textio/record/format.h"

// Every record of the store file, in the order in which they stand there: what the stages write and what
// reads the file again.
namespace varpre::store_records {

// The beginning.
inline constexpr FormatText heading{"('>INPUT DATA FROM PROGRAM VARPRE')"};
inline constexpr FormatText options{"(1(' OPTIONS :',2X,20I3))"};

// Species and elements of a phase.
inline constexpr FormatText species_count{"(I5,' SPECIES ')"};
inline constexpr FormatText element_count{"(I5,'  Elements')"};
inline constexpr FormatText species_names{"(' NSYMB',6X,5(A,2X))"};
inline constexpr FormatText molar_masses{"(' XMOL',7X,5(1PE20.13,1X))"};
inline constexpr FormatText element_symbols{"(' SYME ',6X,5(A2,6X,2X))"};
inline constexpr FormatText element_masses{"(' EMOL',7X,5(1PE20.13,1X))"};
inline constexpr FormatText mass_fractions{"(' XE  ',7X,5(1PE20.13,1X))"};

// Transport: the coefficients of a fit each, then lists over the gas species.
inline constexpr FormatText conductivity{"(' XLAM(',I4,')',1X,5(1PE11.4,1X))"};
inline constexpr FormatText monoatomic_conductivity{"(' XLMO(',I4,')',1X,5(1PE11.4,1X))"};
inline constexpr FormatText viscosity{"(' ETA (',I4,')',1X,5(1PE11.4,1X))"};
inline constexpr FormatText diffusion{"(' D(',2I4,')',5(1PE11.4,1X))"};
inline constexpr FormatText well_depths{"(' EPS/K',6X,5(1PE11.4,1X))"};
inline constexpr FormatText diameters{"(' SIGMA  ',4X,5(1PE11.4,1X))"};
inline constexpr FormatText dipole_moments{"(' DI1    ',4X,5(1PE11.4,1X))"};
inline constexpr FormatText polarizabilities{"(' DI2    ',4X,5(1PE11.4,1X))"};
inline constexpr FormatText collision_numbers{"(' DI3    ',4X,5(1PE11.4,1X))"};

// Thermochemistry of a species, and the properties of the surface.
inline constexpr FormatText thermochemistry{
    "(' HL,HH(',I4,')',5(1PE11.4,1X),/, 5(1PE11.4,1X),/, 4(1PE11.4,1X),1PE10.3,1X,1PE10.3,1X,1PE10.3)"};
inline constexpr FormatText surface_property{"(A4,4X,':',1PE11.4)"};

// A mechanism and its collision efficiencies.
inline constexpr FormatText reaction_count{"(I5,' ELEMENTARY REACTIONS')"};
inline constexpr FormatText partner_count{"(I5,' THIRD BODIES ')"};
inline constexpr FormatText gas_reaction{"(6(1X,I5),3X,3(1PE11.4,1X),/,1X,I5,33X,3(1PE11.3,1X))"};
inline constexpr FormatText falloff{"(25X,3(1PE11.4,1X),/,25X,3(1PE9.2,1X),1X,1PE9.2,1X,1PE9.2)"};
inline constexpr FormatText surface_reaction{
    "(12(1X,I5),/,36X,3X,3(1PE11.4,1X),/,3(1X,I5),18X,3X,3(1PE11.4,1X))"};
inline constexpr FormatText pointer_count{"(I5,' REACTION POINTERS   ')"};
inline constexpr FormatText pointers{"(4(2X,3I5))"};
inline constexpr FormatText pair_codes{"(' IREVER',5X,30I2)"};
inline constexpr FormatText inert_count{"(I5,' INERT SPECIES :   ',5(A,1X))"};
inline constexpr FormatText efficiencies{"(' EFF.',A4,3X,5(1PE11.4,1X))"};

// Complex and photo reactions.
inline constexpr FormatText complex_count{"(I5,' COMPLEX REACTIONS')"};
inline constexpr FormatText complex_coefficients{"(' STOBR',6X,8(F6.3,1X))"};
inline constexpr FormatText complex_species{"(' NUMS ',6X,8(2X,I2,3X))"};
inline constexpr FormatText complex_orders{"(' ORD  ',6X,8(F6.3,1X))"};
inline constexpr FormatText complex_rate{"(' ABR,TBR,EBR',5(1PE11.4,1X))"};
inline constexpr FormatText photo_count{"(I5,' PHOTO REACTIONS')"};
inline constexpr FormatText photo_reaction{"(' NUMS: ',I3,'>',3(I3,1X),2X,1PE11.4)"};

// Mixtures and flame conditions.
inline constexpr FormatText mixture{"(' T ,P ,X ',3X,5(1PE11.4,1X))"};
inline constexpr FormatText grid{"(I5,' GRIDP.  ',I5)"};
inline constexpr FormatText geometry{"(I5,' GEOMETRY')"};
inline constexpr FormatText radii{"('INNER AND OUTER RADIUS ',4(1PE11.4,1X))"};
inline constexpr FormatText times{"('T0,TEND,NTSTEPS, NMAX  ',4(1PE11.4,1X))"};
inline constexpr FormatText energy_source{"('SOURCE ENE,WIDTH,T,GRA ',4(1PE11.4,1X))"};
inline constexpr FormatText steps{"('STEP,ATOL,RTOL,RSTEP   ',4(1PE11.4,1X))"};
inline constexpr FormatText profile{"('AM,SIG,RM,ALPHA,OMEGA  ',5(1PE11.4,1X))"};
inline constexpr FormatText stops{"('TSOP,MSTOP,ART,RB      ',4(1PE11.4,1X))"};
inline constexpr FormatText weights{"('WFR,WFP,WFU,WFT        ',4(1PE11.4,1X))"};

// The two-dimensional parameters.
inline constexpr FormatText velocities{"('UINI,VINI,RI2,DIST     ',4(1PE11.4,1X))"};
inline constexpr FormatText limits{"('DUMMY,TMAX,HMAX,REDF   ',4(1PE11.4,1X))"};
inline constexpr FormatText sources{"('XSOU,YSOU,DUMMY,DUMMY  ',4(1PE11.4,1X))"};
inline constexpr FormatText gravity{"('GACC,DUMMY,DUMMY,DUMMY ',4(1PE11.4,1X))"};

// The end.
inline constexpr FormatText flags{"(' Spec. Flags',3X,20I3,4(/,' Spec. Flags',3X,20I3))"};
inline constexpr FormatText end{"('<   ')"};

// Particle data, behind the end.
inline constexpr FormatText particle_heading{"('>PARTICLE DATA FROM THERMLIQ')"};
inline constexpr FormatText particle_grid{"(I5,' GRIDP.  ')"};
inline constexpr FormatText particle_count{"(I5,' PARTICLE SPECIES ')"};
inline constexpr FormatText particle_list{"('PARTICLE SPECIES-LIST:')"};
inline constexpr FormatText particle_names{"(5(A8,2X),6X)"};
inline constexpr FormatText particle_data{"('PARDAT OF CONDENSED SPECIES')"};
inline constexpr FormatText particle_name{"(A8)"};
inline constexpr FormatText particle_values_1{"('XTROL,VOLCH,WAFSRK,WAF:',4(1PE11.4,1X))"};
inline constexpr FormatText particle_values_2{"('PCRIT,TCRIT,TBOIL,VPA: ',4(1PE11.4,1X))"};
inline constexpr FormatText particle_values_3{"('VPB,VPC,VPD,CA:        ',4(1PE11.4,1X))"};
inline constexpr FormatText particle_values_4{"('CB,CC,CD,XDIAST:       ',4(1PE11.4,1X))"};
inline constexpr FormatText particle_values_5{"('ALPH,BETA,GAM,XXXX:    ',4(1PE11.4,1X))"};
inline constexpr FormatText particle_values_6{"('XXXX,XXXX,XXXX,XXXX:   ',4(1PE11.4,1X))"};
inline constexpr FormatText particle_fractions{"(' XPA     ',3X,5(1PE11.4,1X))"};
inline constexpr FormatText particle_end{"('<')"};

}  // namespace varpre::store_records
