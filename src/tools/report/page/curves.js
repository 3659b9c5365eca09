"use strict";
// What is drawn of reactions: series of points, each with its unit and limits.
globalThis.curves = (() => {
  const { BAR, text } = units;

  // The temperatures at which all species of a gas reaction have thermochemistry.
  function thermo_limits(r) {
    const limits = [...r.educts, ...r.products].map((n) => r.store.thermo[n - 1]?.limits).filter(Boolean);
    return [Math.max(...limits.map((t) => t[0])), Math.min(...limits.map((t) => t[2]))];
  }

  // Why a reaction has no curve, empty where it has.
  function note(r) {
    if (r.sticking) {
      const given = text(physics.sticking_as_given(r));
      return `${r.equation}: sticking coefficient ${given}, in the file as ${text(r.A)}; it is no rate constant.`;
    }
    return physics.no_rate(r) ? `${r.equation}: not Arrhenius; the solver has a law of its own for it.` : "";
  }

  // Over 1000 K/T, in the unit of each. `look`: {at: pressure and fractions, from, to: K, length}.
  function sampler(r, equation, { from, to, length }) {
    const factor = units.rate_factor(physics.dimension(r), length);
    const unit = units.rate_unit(physics.dimension(r), length);
    return (kind, label, f, more = {}) => ({
      kind,
      unit,
      label,
      equation,
      points: plots.sampled(1000 / to, 1000 / from, (x) => factor * (f(1000 / x) ?? NaN)),
      ...more,
    });
  }
  function forward(r, look) {
    const of = sampler(r, r.equation, look);
    if (physics.no_rate(r)) return [];
    if (!physics.is_falloff(r)) {
      const label = r.form === 1 ? `${r.equation}, without the coverage` : r.equation;
      return [of("forward", label, (T) => physics.rate(r, T))];
    }
    const at = (q) => (T) => physics.falloff(r, T, look.at)[q];
    return [
      of("forward", `${r.equation} at ${text(look.at.p / BAR)} bar`, at("k")),
      of("forward", "its high-pressure limit", at("high"), { style: "band" }),
      of("forward", "its low-pressure limit times [M]", at("low"), { style: "thin" }),
    ];
  }
  function reverse(r, look) {
    const back = r.backward;
    if (!back) return [];
    const of = sampler(back, r.equation, look);
    const left_to_solver = physics.no_rate(back) !== "";
    const list = [];
    if (!left_to_solver) {
      list.push(of("reverse", `reverse of ${r.equation}`, (T) => physics.rate_constant(back, T, look.at)));
    }
    if (r.phase === "gas" && !physics.no_rate(r)) {
      const label = left_to_solver ? `reverse of ${r.equation}: the solver computes it` : "from equilibrium";
      const [low, high] = thermo_limits(r);
      const more = { style: left_to_solver ? "line" : "band", inside: [1000 / high, 1000 / low] };
      list.push(of("reverse", label, (T) => physics.reverse_from_equilibrium(r, T, look.at), more));
    }
    return list;
  }
  const of_reaction = (r, look) => [...forward(r, look), ...reverse(r, look)];

  // Series with the same unit, in the order of their first.
  function by_unit(list) {
    const groups = new Map();
    for (const series of list) {
      if (!groups.has(series.unit)) groups.set(series.unit, []);
      groups.get(series.unit).push(series);
    }
    return [...groups];
  }

  // The stored reverse rate over that from equilibrium.
  const ratio = (r, { from, to }) => ({
    label: `${r.equation}, ${physics.origin(r) === "fitted" ? "fitted" : "written in MEC"}`,
    points: plots.sampled(from, to, (T) => physics.ratio_to_equilibrium(r, T)),
    inside: thermo_limits(r),
  });

  // A falloff reaction over pressure, bar, between its limits.
  function over_pressure(r, T, [from, to], { at, length }) {
    const factor = units.rate_factor(physics.dimension(r), length);
    const values = (q) =>
      plots.sampled(from, to, (bar) => factor * physics.falloff(r, T, { ...at, p: bar * BAR })[q], {
        logarithmic: true,
      });
    return [
      { label: "k", points: values("k") },
      { label: "high-pressure limit", points: values("high"), style: "band" },
      { label: "low-pressure limit times [M]", points: values("low"), style: "thin" },
    ];
  }

  return { note, of_reaction, by_unit, ratio, over_pressure };
})();
