"use strict";
// What a store file says as functions of temperature, pressure and mixture. All in SI.
globalThis.physics = (() => {
  const { R } = units;
  const STANDARD_PRESSURE = 1e5; // Pa
  const FIT_LIMITS = [200, 2600]; // K, between which transport properties were fitted
  const FORM = { arrhenius: 0, coverage: 1, falloff: 2, left_to_solver: 3, other_law: 4 };
  const COMPARED = { from: 500, to: 2500, step: 100 }; // K, where stored reverse rates are held against equilibrium
  const CM3 = 1e-6; // m³

  // --- preparing ---

  // Adds to a store what the functions below lean on: names, masses and thermochemistry of all species by
  // number, and each reaction's place in the file.
  function prepare(store) {
    store.names = [...store.gas.species, ...store.surface.species];
    store.index = new Map(store.names.map((name, i) => [name, i]));
    store.NG = store.gas.species.length;
    store.M = [...store.gas.molar_masses, ...store.surface.molar_masses];
    store.thermo = [...store.gas.thermo];
    store.surface.thermo.forEach((t, i) => {
      store.thermo[store.NG + i] = t;
    });
    store.partners = Object.keys(store.efficiencies);
    store.rows = [];
    for (const phase of ["gas", "surface"]) prepare_mechanism(store, phase);
    return store;
  }
  // An object of the values of a row; null is none.
  function unpacked(names, values) {
    const object = {};
    for (let i = 0; i < names.length; ++i) if (values[i] !== null) object[names[i]] = values[i];
    return object;
  }
  function prepare_mechanism(store, phase) {
    const mechanism = store[`${phase}_mechanism`];
    const { names, rows } = mechanism.reactions;
    const reactions = rows.map((row, i) =>
      Object.assign(unpacked(names, row), {
        store,
        phase,
        number: i + 1,
        id: (phase === "surface" ? "s" : "") + (i + 1),
      }),
    );
    mechanism.reactions = reactions;
    for (const r of reactions) {
      if (r.reverse === undefined) continue;
      r.backward = reactions[r.reverse];
      r.backward.is_backward = true;
    }
    store.rows.push(...reactions.filter((r) => !r.is_backward));
  }

  // --- species ---

  // cp J/(mol K), h J/mol, s J/(mol K) of a species, from the range that holds or the one that is named; null
  // where the file has none.
  function thermo(store, i, T, range) {
    const t = store.thermo[i];
    if (!t) return null;
    const a = t[range || (T < t.limits[1] ? "lower" : "upper")];
    const M = store.M[i];
    return {
      cp: M * ((((a[4] * T + a[3]) * T + a[2]) * T + a[1]) * T + a[0]),
      h: M * ((((((a[4] / 5) * T + a[3] / 4) * T + a[2] / 3) * T + a[1] / 2) * T + a[0]) * T + a[5]),
      s: M * (((((a[4] / 4) * T + a[3] / 3) * T + a[2] / 2) * T + a[1]) * T + a[0] * Math.log(T) + a[6]),
    };
  }

  // What jumps where the two ranges meet: cp and s as fractions of themselves, h as one of R T.
  function jumps(store, i) {
    const T = store.thermo[i].limits[1];
    const low = thermo(store, i, T, "lower");
    const high = thermo(store, i, T, "upper");
    const relative = (from, to) => (from === to ? 0 : (to - from) / from); // a surface may have zeros
    return {
      cp: relative(low.cp, high.cp),
      h: (high.h - low.h) / (R * T),
      s: relative(low.s, high.s),
    };
  }

  // The value of a transport fit: its logarithm is a polynomial of ln T.
  function fit(c, T) {
    if (!c) return null;
    const x = Math.log(T);
    return Math.exp(c[0] + x * (c[1] + x * (c[2] + x * c[3])));
  }
  const pair = (i, j) => (Math.max(i, j) * (Math.max(i, j) + 1)) / 2 + Math.min(i, j);

  // The binary diffusion coefficient of two gas species, m²/s.
  function diffusion(store, i, j, T, p) {
    const value = fit(store.transport.diffusion[pair(i, j)], T);
    return value === null ? null : value / p;
  }

  // --- rates ---

  const is_falloff = (r) => Math.abs(r.form) === FORM.falloff;
  const partner_of = (r) => (r.phase === "gas" ? r.educts.find((n) => n > r.store.NG) : undefined);

  // The exponents L and q in the unit m^L/(mol^q s) of the rate constant. A collision partner counts in the
  // order, except with falloff.
  function dimension(r) {
    if (r.phase === "gas") {
      const order = r.educts.length - (is_falloff(r) && partner_of(r) !== undefined ? 1 : 0);
      return { L: 3 * (order - 1), q: order - 1 };
    }
    const species = r.educts.filter((n) => n <= r.store.names.length);
    const gas = species.filter((n) => n <= r.store.NG).length;
    return { L: 3 * gas + 2 * (species.length - gas - 1), q: species.length - 1 };
  }

  const arrhenius = (A, b, E, T) => A * T ** b * Math.exp(-E / (R * T));
  const rate = (r, T) => arrhenius(r.A, r.b, r.E, T);

  // The concentration of a collision partner, mol/m³: each species counts with its efficiency. Without a
  // partner, that of all.
  function partner_concentration(store, partner, T, { p, fractions }) {
    const efficiencies =
      partner === undefined ? null : store.efficiencies[store.partners[partner - store.NG - 1]];
    if (partner !== undefined && !efficiencies) return NaN;
    const sum = fractions.reduce((total, x, i) => total + x * (efficiencies ? efficiencies[i] : 1), 0);
    return (p / (R * T)) * sum;
  }

  // Troe's centre of the broadening from a, T***, T*, T**; five zeros: none, Lindemann's form.
  function broadening_centre([a, T3, T1, T2, fifth], T) {
    if (!a && !T3 && !T1 && !T2 && !fifth) return 1;
    return (1 - a) * Math.exp(-T / T3) + a * Math.exp(-T / T1) + Math.exp(-T2 / T);
  }

  // The rate constant of a falloff reaction between its limits, in the unit of the high-pressure limit.
  // The file has that limit a factor of 1 cm³/m³ too small where the partner counted in the order, and the
  // low-pressure limit in cm, mol, s.
  function falloff(r, T, at) {
    const partner = partner_of(r);
    const species = r.educts.length - (partner === undefined ? 0 : 1);
    const [A, b, E, ...broadening] = r.falloff;
    const high = rate(r, T) / (partner === undefined ? 1 : CM3);
    const low = arrhenius(A * CM3 ** species, b, E, T) * partner_concentration(r.store, partner, T, at);
    const reduced = low / high;
    const centre = Math.log10(broadening_centre(broadening, T));
    const c = Math.log10(reduced) - 0.4 - 0.67 * centre;
    const n = 0.75 - 1.27 * centre;
    const F = 10 ** (centre / (1 + (c / (n - 0.14 * c)) ** 2));
    return { high, low, F, k: ((high * reduced) / (1 + reduced)) * F };
  }

  // A coverage-dependent rate constant with the mole fractions of a surface.
  function rate_with_coverage(r, T, { surface }) {
    const [a, m, E] = r.values || [0, 0, 0];
    const coverage = surface[r.coverage - 1 - r.store.NG];
    return rate(r, T) * 10 ** (a * coverage) * coverage ** m * Math.exp((-E * coverage) / (R * T));
  }

  // Why the file does not say what the rate constant is; empty where it does.
  function no_rate(r) {
    if (r.sticking) return "sticking coefficient";
    if (r.form >= FORM.other_law) return "law of the solver";
    return r.form < 0 && !(r.form === -FORM.coverage && r.A !== 0) ? "computed by the solver" : "";
  }

  // The rate constant in the unit of `dimension`, null where the file does not say it. That of a
  // coverage-dependent reaction is the part without the coverage.
  function rate_constant(r, T, at) {
    if (no_rate(r)) return null;
    return is_falloff(r) ? falloff(r, T, at).k : rate(r, T);
  }

  // A sticking coefficient as it was given; the file has γ/(1 − γ/2).
  const sticking_as_given = (r) => r.A / (1 + r.A / 2);

  // --- reverse rates ---

  // What equilibrium needs of a temperature: R T, logarithms, and the Gibbs energies of the gas species over R T.
  function at_temperature(store, T) {
    const RT = R * T;
    const energies = store.gas.species.map((_, i) => {
      const t = thermo(store, i, T);
      return t ? (t.h - T * t.s) / RT : NaN;
    });
    return { RT, log_T: Math.log(T), log_standard: Math.log(RT / STANDARD_PRESSURE), energies };
  }
  // The same, kept for the temperatures at which all reactions are looked at.
  function gibbs(store, T) {
    store.gibbs ??= new Map();
    if (!store.gibbs.has(T)) {
      if (store.gibbs.size > 500) store.gibbs.clear();
      store.gibbs.set(T, at_temperature(store, T));
    }
    return store.gibbs.get(T);
  }

  // By how much the reaction changes the sum of Gibbs energies over R T, and the logarithm of the concentrations at
  // standard pressure in mol/m³: that of the equilibrium constant is their sum with the opposite sign. A collision
  // partner stands on both sides and is left out.
  function equilibrium({ store: { NG }, educts, products }, { energies, log_standard }) {
    let sum = 0;
    let moles = 0;
    for (let i = 0; i < products.length; ++i) {
      if (products[i] > NG) continue;
      sum += energies[products[i] - 1];
      ++moles;
    }
    for (let i = 0; i < educts.length; ++i) {
      if (educts[i] > NG) continue;
      sum -= energies[educts[i] - 1];
      --moles;
    }
    return sum + moles * log_standard;
  }

  // What the reverse rate constant of a gas reaction is by equilibrium; null where that cannot be said.
  function reverse_from_equilibrium(r, T, at) {
    const forward = r.phase === "gas" ? rate_constant(r, T, at) : null;
    return forward === null ? null : forward * Math.exp(equilibrium(r, gibbs(r.store, T)));
  }

  const has_stored_fit = (r) =>
    r.phase === "gas" && r.form === FORM.arrhenius && r.backward?.form === FORM.arrhenius;
  // The logarithm of the stored reverse rate over that from equilibrium.
  function log_ratio(r, at) {
    const { A, b, E } = r.backward;
    return Math.log(A / r.A) + (b - r.b) * at.log_T - (E - r.E) / at.RT - equilibrium(r, at);
  }
  const ratio_to_equilibrium = (r, T) => Math.exp(log_ratio(r, gibbs(r.store, T)));

  // The two temperatures through which varpre fits a reverse rate, K.
  function fit_temperatures(r) {
    const limits = r.educts.filter((n) => n <= r.store.NG).map((n) => r.store.thermo[n - 1]?.limits);
    if (!limits.length || limits.includes(undefined)) return [];
    const low = Math.max(...limits.map((t) => t[0] + 400));
    const high = Math.min(...limits.map((t) => t[1] + 1500));
    return high > 6000 ? [Math.max(low, 1000), high] : [low, high];
  }

  // Where a reverse rate comes from: "fitted" by varpre, "copied" from the forward one, "solver", "written"
  // by the author as a reaction of its own, "" where there is none. A fitted one meets equilibrium at two temperatures,
  // but for the digits of the file.
  function reverse_origin(r) {
    if (!r.backward) return "";
    if (r.backward.form < 0) return no_rate(r.backward) ? "solver" : "copied";
    if (!has_stored_fit(r))
      return r.phase === "surface" && r.form === 0 && r.b === r.backward.b ? "stored" : "written";
    const meets = (T) => Math.abs(log_ratio(r, gibbs(r.store, T))) < 0.05;
    const at = fit_temperatures(r);
    return r.b === r.backward.b && at.length && at.every(meets) ? "fitted" : "written";
  }

  // The factor by which a fitted reverse rate is off at worst from 500 to 2500 K, 1 or more; null for others.
  function worst(r) {
    if (r.worst === undefined) {
      r.origin = reverse_origin(r);
      r.worst = r.origin === "fitted" ? farthest_from_equilibrium(r) : null;
    }
    return r.worst;
  }
  function compared(store) {
    const { from, to, step } = COMPARED;
    store.compared ??= Array.from({ length: (to - from) / step + 1 }, (_, i) =>
      gibbs(store, from + i * step),
    );
    return store.compared;
  }
  function farthest_from_equilibrium(r) {
    let farthest = 0;
    for (const at of compared(r.store)) farthest = Math.max(farthest, Math.abs(log_ratio(r, at)));
    return Number.isNaN(farthest) ? null : Math.exp(farthest);
  }
  function origin(r) {
    worst(r);
    return r.origin;
  }

  function kind(r) {
    if (r.sticking) return "sticking";
    const form = Math.abs(r.form);
    if (form === FORM.arrhenius || form === FORM.left_to_solver) {
      return partner_of(r) === undefined ? "Arrhenius" : "three-body";
    }
    return { 1: "coverage", 2: "falloff", 4: "non-Arrhenius" }[form] || `IARRH ${r.form}`;
  }

  // --- mixtures ---

  // The atoms in a molecule, by element; mass fractions and molar masses say it.
  function atoms(store, i) {
    const n = store.gas.elements.length;
    const counts = {};
    store.gas.elements.forEach((element, k) => {
      const count = (store.gas.mass_fractions[i * n + k] * store.M[i]) / store.gas.element_masses[k];
      counts[element.toUpperCase()] = Math.round(count);
    });
    return counts;
  }

  // Oxygen atoms that each atom takes up, in CO2, H2O and SO2; of an element that is not here nothing is said.
  const OXYGEN_TAKEN = { C: 2, H: 0.5, S: 2, O: 0, N: 0, AR: 0, HE: 0, NE: 0, KR: 0, XE: 0 };

  // The oxygen that the elements of a mixture need over what they have, and what that means for it.
  function equivalence_ratio(store, mixture) {
    let need = 0;
    let have = 0;
    let fuel = 0; // oxygen still needed by species that burn
    let oxidiser = 0; // oxygen that others have to spare
    for (const [i, x] of mixture.gas.entries()) {
      if (!(x > 0)) continue;
      const here = atoms(store, i);
      const unknown = Object.keys(here).find((e) => here[e] > 0 && OXYGEN_TAKEN[e] === undefined);
      if (unknown) return { ratio: null, note: `not said: ${store.names[i]} has ${unknown}` };
      const needed = Object.keys(here).reduce((sum, e) => sum + here[e] * OXYGEN_TAKEN[e], 0);
      const oxygen = here.O || 0;
      need += x * needed;
      have += x * oxygen;
      fuel += x * Math.max(needed - oxygen, 0);
      oxidiser += x * Math.max(oxygen - needed, 0);
    }
    return {
      ratio: need > 0 && have > 0 ? need / have : null,
      note: mixture_note(need, have, fuel, oxidiser),
    };
  }
  function mixture_note(need, have, fuel, oxidiser) {
    if (need === 0 && have === 0) return "neither fuel nor oxidiser";
    if (have === 0) return "fuel without oxidiser";
    if (need === 0) return "oxidiser without fuel";
    if (fuel < 0.01 * need) return "of its elements; burnt, no fuel left";
    return oxidiser < 0.01 * have ? "of its elements; no oxidiser left" : "of its elements";
  }

  return {
    FIT_LIMITS,
    COMPARED,
    prepare,
    thermo,
    jumps,
    fit,
    pair,
    diffusion,
    is_falloff,
    partner_of,
    dimension,
    rate,
    partner_concentration,
    broadening_centre,
    falloff,
    rate_with_coverage,
    no_rate,
    rate_constant,
    sticking_as_given,
    reverse_from_equilibrium,
    has_stored_fit,
    ratio_to_equilibrium,
    fit_temperatures,
    origin,
    worst,
    kind,
    atoms,
    equivalence_ratio,
  };
})();
