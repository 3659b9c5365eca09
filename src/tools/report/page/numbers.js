"use strict";
// Every number that the file holds of a species or a reaction, with what it means and its unit.
globalThis.numbers = (() => {
  const { BAR, text } = units;

  // --- species: rows of label, meaning, unit, value, digits ---

  const TRANSPORT_FITS = [
    ["XLAM", "conductivity", "heat conductivity, W/(m K)"],
    ["XLMO", "monoatomic_conductivity", "its monoatomic part, W/(m K)"],
    ["ETA", "viscosity", "viscosity, kg/(m s)"],
  ];
  const MOLECULE = [
    ["EPS/K", "well_depths", "well depth over Boltzmann constant", "K"],
    ["SIGMA", "diameters", "collision diameter", "Å"],
    ["DI1", "dipole_moments", "dipole moment", "debye"],
    ["DI2", "polarizabilities", "polarizability", "Å³"],
    ["DI3", "collision_numbers", "rotational collision number", ""],
  ];
  const coefficients = (label, meaning, unit, list) =>
    (list || []).map((c, j) => [`${label} ${j + 1}`, meaning, unit, c, 5]);

  function thermo_rows(t) {
    if (!t) return [];
    const limits = ["lower limit less 20 K", "temperature where the ranges meet", "upper limit"];
    return [
      ...coefficients("HL", "cp, h and s in the lower range, per kilogram", "", t.lower),
      ...coefficients("HH", "cp, h and s in the upper range, per kilogram", "", t.upper),
      ...limits.map((meaning, j) => ["TLIM", meaning, "K", t.limits[j], 4]),
    ];
  }
  function transport_rows(S, i, other) {
    const t = S.transport;
    const j = S.index.get(other);
    const diffusion = j < S.NG && t.diffusion[physics.pair(i, j)];
    return [
      ...TRANSPORT_FITS.flatMap(([label, key, meaning]) =>
        coefficients(label, `ln of ${meaning}, in powers of ln T`, "", t[key][i]),
      ),
      ...coefficients(
        "D",
        `ln of diffusion in ${other} times pressure, Pa m²/s, in powers of ln T`,
        "",
        diffusion || [],
      ),
      ...MOLECULE.filter(([, key]) => i < t[key].length).map(([label, key, meaning, unit]) => [
        label,
        meaning,
        unit,
        t[key][i],
        5,
      ]),
    ];
  }
  // `other`: the gas species of a diffusion coefficient.
  function of_species(S, name, other) {
    const i = S.index.get(name);
    const gas = i < S.NG;
    const phase = gas ? S.gas : S.surface;
    const first = (gas ? i : i - S.NG) * phase.elements.length;
    return [
      ["XMOL", "molar mass", "kg/mol", S.M[i], 14],
      ...phase.elements.map((e, j) => [
        "XE",
        `mass fraction of ${e}`,
        "",
        phase.mass_fractions[first + j],
        14,
      ]),
      ...thermo_rows(S.thermo[i]),
      ...(gas ? transport_rows(S, i, other) : []),
      ...(S.flags.length ? [["Spec. Flags", "flag", "", S.flags[i], 3]] : []),
    ];
  }

  // --- collision partners ---

  // The usual efficiency of a partner is told last.
  function efficiency_text(store, partner) {
    const row = store.efficiencies[partner];
    if (!row) return "";
    const counts = new Map();
    for (const e of row) counts.set(e, (counts.get(e) || 0) + 1);
    const [usual] = [...counts].sort(([, a], [, b]) => b - a)[0] || [];
    const others = row.map((e, i) => (e === usual ? "" : `${store.names[i]} ${text(e)}`)).filter(Boolean);
    return [...others, usual === undefined ? "" : `others ${text(usual)}`].filter(Boolean).join(", ");
  }
  function efficiencies(r) {
    const n = physics.partner_of(r);
    return n === undefined ? "" : efficiency_text(r.store, r.store.partners[n - r.store.NG - 1]);
  }

  // --- reactions: rows of label, meaning, value, unit ---

  const counted_partner = (r) => physics.is_falloff(r) && physics.partner_of(r) !== undefined;
  // A in the unit of the rate constant, in m or cm. The file has it without a factor where the partner counted.
  function A_in(r, length) {
    if (r.sticking) return r.A;
    return r.A * units.rate_factor(physics.dimension(r), length) * (counted_partner(r) ? 1e6 : 1);
  }
  const A_unit = (r, length) => (r.sticking ? "" : units.rate_unit(physics.dimension(r), length));
  const stored_unit = (r) => (counted_partner(r) ? `10⁶ ${A_unit(r, "m")}` : A_unit(r, "m"));

  const A_MEANINGS = {
    sticking: "γ/(1 − γ/2) of the sticking coefficient γ",
    falloff: "of the high-pressure limit; M counted in the order",
  };
  function additional_rows(r) {
    if (!r.values) return [];
    const species = r.store.names[r.coverage - 1];
    const meanings = ["a", "m", "E"].map((q) =>
      r.coverage ? `coverage of ${species}: ${q}` : "as given behind @",
    );
    return r.values.map((v, i) => [`VT${i + 4}`, meanings[i], v, r.coverage && i === 2 ? "J/mol" : ""]);
  }
  function falloff_rows(r) {
    if (!r.falloff) return [];
    const { L, q } = physics.dimension(r);
    const meanings = [
      ["A of the low-pressure limit", units.rate_unit({ L: L + 3, q: q + 1 }, "cm")],
      ["b of the low-pressure limit", ""],
      ["E of the low-pressure limit", "J/mol"],
      ["broadening: a of Troe", ""],
      ["broadening: T*** of Troe", "K"],
      ["broadening: T* of Troe", "K"],
      ["broadening: T** of Troe", "K"],
      ["broadening: fifth value, not used here", ""],
    ];
    return r.falloff.map((value, i) => [`FALL${i + 1}`, meanings[i][0], value, meanings[i][1]]);
  }
  function net_text(r) {
    const { pointers } = r.store[`${r.phase}_mechanism`];
    const own = pointers.filter(([, reaction]) => reaction === r.number);
    return own.map(([species, , net]) => `${r.store.names[species - 1] ?? species}: ${text(net)}`).join(", ");
  }
  // As the file has them.
  function of_reaction(r) {
    const kind = physics.kind(r);
    const given = (what, value) => (value === undefined || value === "" ? [] : [[...what, value, ""]]);
    return [
      ["IARRH", `rate form: ${kind}${r.form < 0 ? ", generated reverse" : ""}`, r.form, ""],
      ["A", A_MEANINGS[kind] || "pre-exponential factor", r.A, stored_unit(r)],
      ["b", "exponent of T", r.b, ""],
      ["E", "activation energy", r.E, "J/mol"],
      ...additional_rows(r),
      ...falloff_rows(r),
      ...given(["ISTICK", "gas species that sticks"], r.store.names[r.sticking - 1]),
      ...given(["ICOV", "species whose coverage counts"], r.store.names[r.coverage - 1]),
      ...given(["IREVER", "code of pairs"], r.pair_code),
      ...given(["NRVEC", "net coefficients of the species"], net_text(r)),
      ...given(["EFF", "collision efficiencies"], efficiencies(r)),
    ];
  }

  function rate_rows(r, T, at) {
    const unit = units.rate_unit(physics.dimension(r), "m");
    if (r.sticking) return [["γ", "sticking coefficient as given", physics.sticking_as_given(r), ""]];
    if (physics.no_rate(r)) return [];
    if (r.coverage) {
      const coverage = at.surface[r.coverage - 1 - r.store.NG];
      return [
        ["k", "without the coverage", physics.rate(r, T), unit],
        ["θ", `coverage of ${r.store.names[r.coverage - 1]}`, coverage, ""],
        [
          "k",
          "with the coverage: k · 10^(a θ) · θ^m · exp(−E θ/RT)",
          physics.rate_with_coverage(r, T, at),
          unit,
        ],
      ];
    }
    if (!physics.is_falloff(r)) return [["k", "rate constant", physics.rate(r, T), unit]];
    const { k, high, low, F } = physics.falloff(r, T, at);
    return [
      ["k", `rate constant at ${text(at.p / BAR)} bar`, k, unit],
      ["k∞", "high-pressure limit", high, unit],
      ["k₀[M]", "low-pressure limit times [M]", low, unit],
      ["F", "broadening", F, ""],
    ];
  }
  // What follows from them at a temperature, pressure and mixture.
  function derived(r, T, at) {
    const rows = rate_rows(r, T, at);
    const partner = physics.partner_of(r);
    if (partner !== undefined) {
      const concentration = physics.partner_concentration(r.store, partner, T, at);
      rows.push(["[M]", "concentration of the collision partner", concentration, "mol/m³"]);
    }
    if (!r.backward) return rows;
    const unit = units.rate_unit(physics.dimension(r.backward), "m");
    const equilibrium = physics.reverse_from_equilibrium(r, T, at);
    if (equilibrium !== null) rows.push(["reverse: k", "from equilibrium", equilibrium, unit]);
    if (!physics.no_rate(r.backward)) {
      rows.push(["reverse: k", "stored", physics.rate_constant(r.backward, T, at), unit]);
    }
    return rows;
  }

  return { of_species, efficiency_text, efficiencies, A_in, A_unit, of_reaction, derived };
})();
