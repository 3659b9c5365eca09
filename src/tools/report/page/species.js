"use strict";
// The part of the page about species.
globalThis.species = (() => {
  const { $, make, number, build, panel } = table;
  const { BAR, text, ENERGIES, TRANSPORT } = units;
  const MOST = 6; // that are drawn at a time

  const asked_for = () => state.values.species.split(/[\s,]+/).filter(Boolean);

  // Names as the file writes them, and those that it does not have.
  function chosen(S) {
    const found = [];
    const unknown = [];
    for (const name of asked_for()) {
      const known = S.index.has(name) ? name : S.names.find((n) => n.toUpperCase() === name.toUpperCase());
      if (known === undefined) unknown.push(name);
      else if (!found.includes(known)) found.push(known);
    }
    return { found: found.slice(0, MOST), unknown };
  }

  function unknown_text(S, names) {
    const texts = names.map((name) => {
      const meant = search.suggestions(name, S.names);
      return `There is no species ${name}.${meant.length ? ` Did you mean ${meant.join(", ")}?` : ""}`;
    });
    return texts.join(" ");
  }

  // --- quantities ---

  // What is drawn: id, title, unit, factor from SI, f(store, i, T), limits(store, i).
  function quantities(S, p, other) {
    const { energy, heat, heat_unit } = ENERGIES[state.values.energy];
    const per = state.values.length;
    const thermo = (q, factor) => (s, i, T) => {
      const t = physics.thermo(s, i, T);
      return t && t[q] / factor;
    };
    const stored = (s, i) => s.thermo[i] && [s.thermo[i].limits[0], s.thermo[i].limits[2]];
    const fitted = () => physics.FIT_LIMITS;
    const transport = (key, unit) => {
      const [factor] = TRANSPORT[unit][per];
      return (s, i, T) =>
        i < s.NG && s.transport[key][i] ? factor * physics.fit(s.transport[key][i], T) : null;
    };
    const list = [
      ["cp", "Heat capacity cp", heat_unit, thermo("cp", heat), stored],
      ["h", "Enthalpy h", state.values.energy, thermo("h", energy), stored],
      ["s", "Entropy s", heat_unit, thermo("s", heat), stored],
      [
        "lambda",
        "Heat conductivity",
        TRANSPORT.conductivity[per][1],
        transport("conductivity", "conductivity"),
        fitted,
      ],
      [
        "lambda-mono",
        "Monoatomic part of the heat conductivity",
        TRANSPORT.conductivity[per][1],
        transport("monoatomic_conductivity", "conductivity"),
        fitted,
      ],
      ["eta", "Viscosity", TRANSPORT.viscosity[per][1], transport("viscosity", "viscosity"), fitted],
    ];
    const [factor, unit] = TRANSPORT.diffusion[per];
    const into = (s, i, T) => {
      const j = s.index.get(other);
      return i < s.NG && j < s.NG ? factor * physics.diffusion(s, i, j, T, p * BAR) : null;
    };
    if (S.index.get(other) < S.NG)
      list.push(["D", `Diffusion in ${other} at ${text(p)} bar`, unit, into, fitted]);
    return list.map(([id, title, quantity_unit, f, limits]) => ({
      id,
      title,
      unit: quantity_unit,
      f,
      limits,
    }));
  }

  // --- what is said ---

  function about(S, name) {
    const i = S.index.get(name);
    const t = S.thermo[i];
    const words = [`${name}: ${text(1000 * S.M[i], 6)} g/mol, ${i < S.NG ? "gas" : "surface"}`];
    if (t) {
      const { cp, h, s } = physics.jumps(S, i);
      const percent = (x) => `${text(100 * x, 3)} %`;
      words.push(`thermochemistry from ${text(t.limits[0])} to ${text(t.limits[2])} K as the file has it`);
      words.push(
        `its ranges meet at ${text(t.limits[1])} K and jump there by ${percent(cp)} in cp, ${percent(h)} of RT in h, ${percent(s)} in s`,
      );
    }
    return `${words.join("; ")}.`;
  }

  function values_panel(S, names, list, T) {
    const outside = [];
    const rows = names.map((name) => {
      const i = S.index.get(name);
      const cells = list.map(({ f, limits }) => {
        const range = limits(S, i);
        const value = f(S, i, T);
        const out = value !== null && range && (T < range[0] || T > range[1]);
        if (out) outside.push(name);
        return number(value, 5, out ? "number outside" : "number");
      });
      return [name, number(1000 * S.M[i], 7), ...cells];
    });
    const title = `Values at ${text(T)} K`;
    const columns = ["", ["M, g/mol"], ...list.map(({ title: what, unit }) => [`${what}, ${unit}`])];
    const note = outside.length
      ? make("p", { class: "bad" }, `${text(T)} K is outside the limits of a fit: values in italics.`)
      : null;
    return panel(title, build(columns, rows), note);
  }

  // All that the file holds of one species.
  function numbers_panel(S, name) {
    const rows = numbers
      .of_species(S, name, state.values.other)
      .map(([label, meaning, unit, value, digits]) => [label, meaning, unit, number(value, digits)]);
    return panel(`${name} in the file`, build(["", "quantity", "unit", ["value"]], rows));
  }

  // --- showing ---

  function plot(holder, stores, names, quantity) {
    const [S] = stores;
    const [from, to] = state.range("from", "to");
    const logarithmic = Boolean(state.values.logT);
    const series = [];
    const curve = (store, i, style, look) => ({
      label: stores.length > 1 ? `${store.names[i]}, ${store.name}` : store.names[i],
      points: plots.sampled(from, to, (T) => quantity.f(store, i, T), { logarithmic }),
      style,
      inside: quantity.limits(store, i),
      ...look,
    });
    for (const [c, name] of names.entries()) {
      for (const [k, store] of stores.entries()) {
        const i = store.index.get(name);
        if (i !== undefined)
          series.push(
            curve(store, i, k ? "ring" : "line", { colour: plots.colour(c), light: plots.COLOURS[c] }),
          );
      }
    }
    const switches = names.map((name) => S.thermo[S.index.get(name)]?.limits[1]);
    plots.draw(holder, `species-${quantity.id}`, {
      title: `${quantity.title} of ${names.join(", ")}`,
      unit: quantity.unit,
      x: { name: "T", unit: "K", logarithmic },
      logarithmic: Boolean(state.values.logy),
      series: series.filter((s) => s.points.some((p) => p.y !== null)),
      marks: {
        x: ["cp", "h", "s"].includes(quantity.id) ? [...new Set(switches)].filter(Number.isFinite) : [],
      },
    });
  }

  function show(stores) {
    const [S] = stores;
    const { found, unknown } = chosen(S);
    const other = state.values.other;
    const missing = [...unknown, ...(other && !(S.index.get(other) < S.NG) ? [other] : [])];
    const words = found.map((name) => about(S, name));
    if (missing.length) words.unshift(unknown_text(S, missing));
    $("species-about").textContent = words.join(" ") || "Choose a species.";
    const holder = $("species-charts");
    const wanted = unknown.length ? [] : found;
    const list = quantities(S, state.number("p"), other);
    plots.keep("species-", wanted.length ? list.map((q) => `species-${q.id}`) : []);
    $("species-values").replaceChildren(
      ...(wanted.length ? [values_panel(S, wanted, list, state.number("T"))] : []),
    );
    $("species-numbers").replaceChildren(...wanted.map((name) => numbers_panel(S, name)));
    if (wanted.length) for (const quantity of list) plot(holder, stores, wanted, quantity);
  }

  return { show, chosen, unknown_text };
})();
