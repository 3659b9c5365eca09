"use strict";
// The first part of the page: what one looks for first, and everything of the file that is not a species or a
// reaction.
globalThis.overview = (() => {
  const { make, number, build, panel } = table;
  const { R, BAR, text } = units;

  const plural = (count, one, many = `${one}s`) => `${count} ${count === 1 ? one : many}`;
  // A file that ends too early is truncated; one with a wrong line in its midst is damaged.
  function state_text({ stopped, lines }) {
    if (!stopped) return "complete";
    const { line, reason } = stopped;
    if (line > lines) return `truncated: the file ends behind line ${lines}`;
    return `${line === lines ? "truncated" : "damaged"}: read up to line ${line}: ${reason}`;
  }
  const none = (words) => make("p", { class: "none" }, words);

  // --- the file ---

  // "634 reactions in the file: 309 forward and reverse pairs, 16 one way".
  function reaction_text(mechanism) {
    const pairs = mechanism.reactions.filter((r) => r.backward).length;
    const single = mechanism.reactions.length - 2 * pairs;
    return `${plural(pairs, "pair")} of forward and reverse, ${single} one way`;
  }
  function cards(S) {
    const gas = S.gas_mechanism.reactions.length;
    const surface = S.surface_mechanism.reactions.length;
    return [
      [S.NG, "gas species", `${plural(S.gas.elements.length, "element")}: ${S.gas.elements.join(" ")}`],
      [gas, "gas reactions in the file", reaction_text(S.gas_mechanism)],
      [S.partners.length, "collision partners", "of the gas reactions"],
      ...(S.surface.species.length
        ? [[S.surface.species.length, "surface species", `${S.surface.elements.length} elements`]]
        : []),
      ...(surface ? [[surface, "surface reactions in the file", reaction_text(S.surface_mechanism)]] : []),
      ...(S.complex_reactions.length
        ? [[S.complex_reactions.length, "complex reactions", "under More"]]
        : []),
      ...(S.photo_reactions.length ? [[S.photo_reactions.length, "photo reactions", "under More"]] : []),
    ];
  }
  function file_panel(S) {
    return panel(
      "The file",
      make("p", { class: S.stopped ? "bad" : "good" }, state_text(S)),
      build(
        ["", ""],
        [
          ["directory", S.directory],
          ["written", S.date],
          ["lines", String(S.lines)],
          ["read by", `varpre-report ${S.version}`],
        ],
      ),
    );
  }

  // --- mixtures ---

  const GIVEN = ["PHI", "G", "v", "FREQ", "FAC", "OMEG"]; // values that varpre passes on to the solver
  const bar = (className, fraction) =>
    make("i", { class: className, style: `width:${(100 * Math.min(Math.max(fraction, 0), 1)).toFixed(2)}%` });

  function composition(S, mixture) {
    const mass = mixture.gas.map((x, i) => x * S.M[i]);
    const sum = mass.reduce((a, b) => a + b, 0) || 1;
    const order = mixture.gas.map((_, i) => i).filter((i) => mixture.gas[i] !== 0);
    order.sort((a, b) => mixture.gas[b] - mixture.gas[a]);
    const key = make(
      "th",
      { class: "drawn" },
      make("span", { class: "key mole" }),
      "mole",
      make("span", { class: "key mass" }),
      "mass",
    );
    const rows = order.map((i) => [
      S.names[i],
      number(mixture.gas[i], 5),
      number(mass[i] / sum, 5),
      make("td", { class: "bars drawn" }, bar("mole", mixture.gas[i]), bar("mass", mass[i] / sum)),
    ]);
    return rows.length
      ? build(["gas", ["mole fraction"], ["mass fraction"], key], rows, { class: "fractions" })
      : none("no composition");
  }

  function state_rows(S, mixture) {
    const W = mixture.gas.reduce((a, x, i) => a + x * S.M[i], 0);
    const { ratio, note } = physics.equivalence_ratio(S, mixture);
    return [
      ["temperature", number(mixture.T, 5), "K"],
      ["pressure", number(mixture.P / BAR, 5), "bar"],
      ["enthalpy", number(mixture.H / 1000, 5), "kJ/kg"],
      ["density", number((mixture.P * W) / (R * mixture.T), 5), "kg/m³"],
      ["mean molar mass", number(1000 * W, 5), "g/mol"],
      ["equivalence ratio", number(ratio), note],
      ...given_rows(mixture),
    ];
  }
  function given_rows(mixture) {
    const zero = GIVEN.filter((k) => mixture[k] === 0);
    return [
      ...GIVEN.filter((k) => mixture[k] !== 0).map((k) => [k, number(mixture[k], 5), "for the solver"]),
      ...(zero.length ? [[zero.join(", "), number(0), "for the solver"]] : []),
    ];
  }
  function mixture_panel(S, mixture, title) {
    const surface = mixture.surface
      .map((x, i) => [S.surface.species[i], number(x, 5)])
      .filter((_, i) => mixture.surface[i] !== 0);
    const nothing = mixture.P === 0 && mixture.T === 0;
    if (nothing) return panel(title, none("not given: zeros in the file"));
    return panel(
      title,
      build(["", ["value"], "unit, meaning"], state_rows(S, mixture)),
      composition(S, mixture),
      surface.length ? build(["surface", ["fraction"]], surface) : null,
    );
  }

  // --- what to look at ---

  const WORST_BINS = [
    [1.02, "2 % or less"],
    [1.1, "2 to 10 %"],
    [1.5, "10 to 50 %"],
    [3, "a factor of 1.5 to 3"],
    [Infinity, "a factor above 3"],
  ];
  function bins(values) {
    const counts = WORST_BINS.map(() => 0);
    for (const value of values) ++counts[WORST_BINS.findIndex(([limit]) => value <= limit)];
    return counts;
  }
  function reverse_panel(S, go) {
    const title = "Fitted reverse rates against equilibrium";
    const fitted = S.rows.filter((r) => physics.worst(r) !== null);
    if (!fitted.length) {
      const solver = S.rows.filter((r) => physics.origin(r) === "solver").length;
      return panel(
        title,
        none(
          solver
            ? `none is fitted: the solver computes ${plural(solver, "reverse rate")}`
            : "the file has none",
        ),
      );
    }
    const counts = bins(fitted.map(physics.worst));
    const rows = WORST_BINS.map(([, name], k) => [
      name,
      number(counts[k]),
      make("td", { class: "bars drawn" }, bar("mole", counts[k] / fitted.length)),
    ]);
    const last = [...fitted].sort((a, b) => physics.worst(b) - physics.worst(a)).slice(0, 5);
    return panel(
      title,
      make(
        "p",
        { class: "none" },
        `How far the ${fitted.length} fits of the file are off at worst, 500 to 2500 K.`,
      ),
      build(["off by", ["reactions"], make("th", { class: "drawn" })], rows),
      make("h3", {}, "The worst"),
      build(
        ["reaction", ["off by a factor of"]],
        last.map((r) => [go.reaction(r), number(physics.worst(r), 3)]),
      ),
    );
  }

  // Where the two ranges of a species' thermochemistry do not meet within 2 %.
  function jump_panel(S, go) {
    const rows = [];
    for (const [i, t] of S.thermo.entries()) {
      if (!t?.lower.some(Boolean)) continue;
      const jumps = physics.jumps(S, i);
      const size = Math.max(...Object.values(jumps).map(Math.abs));
      if (size > 0.02)
        rows.push([
          size,
          [go.species(S.names[i]), ...["cp", "h", "s"].map((q) => number(100 * jumps[q], 3))],
        ]);
    }
    rows.sort(([a], [b]) => b - a);
    const title = "Thermochemistry that jumps by more than 2 %";
    if (!rows.length) return panel(title, none("no species where its two ranges meet"));
    return panel(
      title,
      build(
        ["species", ["cp, %"], ["h, % of RT"], ["s, %"]],
        rows.slice(0, 10).map(([, cells]) => cells),
      ),
    );
  }

  // --- values with names ---

  const OPTIONS = {
    Impulse: "−5: particles; −2: counter flow",
    Profiles: "1: a line more in the listing",
    Reduced: "1: a line more in the listing",
    Output: "4: extended listing",
    RevSim: "not 0: the solver computes reverse rates",
    Solid: "1: surface conditions without surface species",
    PLN2D: "1: two-dimensional",
  };

  const values_table = (list) =>
    build(
      ["", ["value"], "unit", "meaning"],
      list.map(({ name, value, unit, meaning }) => [
        name,
        number(value, 5),
        unit,
        meaning || "for the solver",
      ]),
    );
  function options_panel(S) {
    const given = S.options.filter((o) => o.value !== 0);
    const rows = given.map((o) => [
      o.name || "–",
      number(o.slot),
      number(o.value),
      o.meaning ?? OPTIONS[o.name] ?? "for the solver",
    ]);
    return panel(
      "Options",
      rows.length ? build(["", ["slot"], ["value"], "meaning"], rows) : null,
      S.options.length
        ? none(`${given.length ? `the other ${S.options.length - given.length}` : "all"} are 0`)
        : none("not reached"),
    );
  }

  function show(S, go) {
    const holder = table.$("overview");
    holder.replaceChildren(
      make(
        "div",
        { class: "cards" },
        ...cards(S).map(([count, name, words]) =>
          make(
            "div",
            { class: "card" },
            make("b", {}, String(count)),
            make("span", {}, name),
            make("small", {}, words),
          ),
        ),
      ),
      make(
        "div",
        { class: "columns" },
        file_panel(S),
        ...S.mixtures.map((m, i) =>
          mixture_panel(S, m, i === 0 ? "Mixture on the left" : "Mixture on the right"),
        ),
        reverse_panel(S, go),
        jump_panel(S, go),
        panel(
          "Flame conditions",
          S.flame_conditions.length ? values_table(S.flame_conditions) : none("not reached"),
        ),
        options_panel(S),
      ),
    );
  }

  // --- the other blocks ---

  function formula(S, list, coefficients = []) {
    const term = (n, i) =>
      `${(coefficients[i] ?? 1) === 1 ? "" : `${text(coefficients[i])} `}${S.names[n - 1] || "?"}`;
    return list
      .map((n, i) => (n ? term(n, i) : ""))
      .filter(Boolean)
      .join(" + ");
  }
  function complex_panel(S) {
    const rows = S.complex_reactions.map((r) => [
      `${formula(S, r.species.slice(0, 3), r.coefficients)} > ${formula(S, r.species.slice(3), r.coefficients.slice(3))}`,
      r.orders.map((x) => text(x)).join(", "),
      number(r.A),
      number(r.b),
      number(r.E),
    ]);
    return panel(
      "Complex reactions",
      build(["equation", "orders", ["A (m, mol, s)"], ["b"], ["E, J/mol"]], rows),
    );
  }
  function photo_panel(S) {
    const rows = S.photo_reactions.map((r) => [
      `${formula(S, r.species.slice(0, 1))} > ${formula(S, r.species.slice(1))}`,
      number(r.rate),
    ]);
    return panel("Photo reactions", build(["equation", ["rate, as given"]], rows));
  }

  function particle_panel(S) {
    const { grid, species, fractions, data, items } = S.particles;
    const values = items.map(({ name, unit, meaning }, k) => [
      name,
      ...data.map((d) => number(d[k], 5)),
      unit,
      meaning || "for the solver",
    ]);
    const rows = [["fraction", ...fractions.map((x) => number(x, 5)), "", "initial, of sum 1"], ...values];
    return panel(
      "Particles",
      make("p", {}, `${grid} grid points`),
      build(["", ...species.map((n) => [n]), "unit", "meaning"], rows),
    );
  }
  function element_panel(S) {
    const phase = (p, of) => p.elements.map((e, k) => [e, of, number(p.element_masses[k] * 1000, 7)]);
    const rows = [...phase(S.gas, "gas"), ...phase(S.surface, "surface")];
    return panel("Elements", build(["", "of", ["molar mass, g/mol"]], rows));
  }
  const FLAGS = ["", "*", "+", ">"];
  function flag_panel(S) {
    const rows = S.flags.map((f, i) => [S.names[i], number(f), FLAGS[f] || ""]).filter((_, i) => S.flags[i]);
    return panel("Flagged species", build(["species", ["flag"], "in INP"], rows));
  }
  function efficiency_panel(S) {
    const rows = S.partners.map((name) => [name, numbers.efficiency_text(S, name)]);
    return panel("Collision partners", build(["", "efficiencies"], rows));
  }

  function mechanism_panel(S) {
    const counted = [
      ["reactions, generated reverses included", (m) => m.reactions.length],
      ["third bodies", (m) => m.partners],
      ["reaction pointers, NRVEC: net coefficients of species", (m) => m.pointers.length],
      ["inert species", (m) => m.inert],
    ];
    const both = [S.gas_mechanism, ...(S.surface.species.length ? [S.surface_mechanism] : [])];
    const rows = counted.map(([name, of]) => [name, ...both.map((m) => number(of(m)))]);
    return panel(
      "Counts of the mechanism",
      build(["", ["gas"], ["surface"]].slice(0, 1 + both.length), rows),
    );
  }

  function show_more(S) {
    const panels = [
      S.gas_mechanism.reactions.length && mechanism_panel(S),
      S.surface_conditions.length && panel("Surface conditions", values_table(S.surface_conditions)),
      S.complex_reactions.length && complex_panel(S),
      S.photo_reactions.length && photo_panel(S),
      S.two_dimensional.length && panel("Two-dimensional parameters", values_table(S.two_dimensional)),
      S.particles && particle_panel(S),
      S.flags.some(Boolean) && flag_panel(S),
      S.partners.length && efficiency_panel(S),
      S.gas.elements.length && element_panel(S),
    ].filter(Boolean);
    table.$("more-data").replaceChildren(make("div", { class: "panels" }, ...panels));
  }

  return { show, show_more, state_text, bins, cards };
})();
