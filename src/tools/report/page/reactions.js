"use strict";
// The part of the page about reactions.
globalThis.reactions = (() => {
  const { $, make, number, build, panel } = table;
  const { BAR, text, ENERGIES } = units;
  const MOST = 6; // that are drawn at a time
  const FIRST = 200; // rows that are shown at first

  let S = null;
  let other = null; // the store that it is compared with
  let comparison = null;
  let shown = FIRST;
  let rows = [];
  let words = new Set(); // names of species, in upper case

  // --- what the numbers of a reaction are ---

  // Temperature apart, what a rate constant needs: pressure, mole fractions of the gas, coverages of the surface.
  function surroundings(store) {
    const { mixture } = state.values;
    const p = state.number("p") * BAR;
    const pure = store.index.get(mixture.replace(/^in /, ""));
    const set = store.mixtures[mixture === "right" ? 1 : 0];
    const nothing = (list) => list.map(() => 0);
    const surface = set ? set.surface : nothing(store.surface.species);
    if (mixture !== "left" && mixture !== "right") {
      return { p, surface, fractions: store.gas.species.map((_, i) => (i === pure ? 1 : 0)) };
    }
    return { p, surface, fractions: set ? set.gas : nothing(store.gas.species) };
  }

  const energy_in = (E) => E / ENERGIES[state.values.energy].energy;

  function k_of(r, T, at) {
    const k = physics.rate_constant(r, T, at);
    return k === null ? null : k * units.rate_factor(physics.dimension(r), state.values.length);
  }
  function k_cell(r, T, at) {
    if (r.sticking)
      return make("td", { class: "number", "data-value": "" }, `γ ${text(physics.sticking_as_given(r))}`);
    const why = physics.no_rate(r);
    return why ? make("td", { class: "number none", "data-value": "" }, why) : number(k_of(r, T, at));
  }

  const ORIGINS = {
    solver: "computed by the solver",
    written: "written in MEC",
    copied: "copy of the forward",
    stored: "in the file",
    "": "",
  };
  function reverse_cell(r) {
    const w = physics.worst(r);
    if (w === null) return make("td", { class: "reverse" }, ORIGINS[physics.origin(r)] ?? "fitted");
    return make(
      "td",
      { class: w > 1.5 ? "reverse off" : "reverse", "data-value": units.plain(w) },
      `fitted, × ${text(w, 3)}`,
    );
  }

  // --- the table ---

  const COLUMNS = {
    chosen: { title: () => "✓", value: (r) => (is_chosen(r) ? 0 : 1), says: "choice" },
    number: { title: () => "#", value: (r) => (r.phase === "gas" ? 0 : 1e6) + r.number, numeric: true },
    equation: { title: () => "Equation", value: (r) => r.equation },
    A: { title: () => "A", value: (r) => numbers.A_in(r, state.values.length), numeric: true },
    b: { title: () => "b", value: (r) => r.b, numeric: true },
    E: { title: () => `E, ${state.values.energy}`, value: (r) => r.E, numeric: true },
    k: {
      title: () => `k at ${text(state.number("T"))} K`,
      value: (r, at) => k_of(r, state.number("T"), at) ?? -Infinity,
      numeric: true,
    },
    unit: { title: () => "Unit of A, k", value: (r) => numbers.A_unit(r, state.values.length) },
    kind: { title: () => "Kind", value: physics.kind },
    worst: { title: () => "Reverse", value: (r) => physics.worst(r) ?? 0 },
    efficiencies: { title: () => "Efficiencies", value: numbers.efficiencies },
  };

  const ids = () => state.values.reaction.split(",").filter(Boolean);
  const is_chosen = (r) => ids().includes(r.id) || ids().includes(r.backward?.id);
  // Either number of a pair stands for it.
  function chosen(store) {
    const found = ids().map((id) => store.rows.find((r) => r.id === id || r.backward?.id === id));
    return [...new Set(found)].filter(Boolean);
  }

  function wanted(r) {
    const { kind } = state.values;
    if (kind === "gas" || kind === "surface") return r.phase === kind;
    return !kind || physics.kind(r) === kind;
  }
  function sorting() {
    const [, minus, id] = state.values.sort.match(/^(-?)(.*)$/);
    return { id: COLUMNS[id] ? id : "number", down: minus === "-" };
  }
  function found_rows(at) {
    const { id, down } = sorting();
    const matches = search.filter(state.values.filter, words);
    const keyed = S.rows.filter((r) => wanted(r) && matches(r)).map((r) => [COLUMNS[id].value(r, at), r]);
    keyed.sort(([a], [b]) => (a < b ? -1 : a > b ? 1 : 0) * (down ? -1 : 1));
    return keyed.map(([, r]) => r);
  }

  function head_cell(id, { title, numeric, says }) {
    const { id: sorted, down } = sorting();
    const [arrow, order] = down ? [" ▼", "descending"] : [" ▲", "ascending"];
    const is_sorted = id === sorted;
    const name = title();
    const button = make(
      "button",
      {
        type: "button",
        "data-sort": id,
        tabindex: is_sorted ? 0 : -1,
        "aria-label": `sort by ${says || name}`,
      },
      is_sorted ? name + arrow : name,
    );
    const className = (numeric && "number") || (id === "chosen" && "drawn");
    return make("th", { class: className || undefined, "aria-sort": is_sorted ? order : "none" }, button);
  }
  const head_cells = () => Object.entries(COLUMNS).map(([id, column]) => head_cell(id, column));
  function row_of(r, at) {
    const box = make("input", {
      type: "checkbox",
      tabindex: -1,
      "aria-label": `plot ${r.equation}`,
      "data-reaction": r.id,
    });
    box.checked = is_chosen(r);
    const { length } = state.values;
    return make(
      "tr",
      { class: box.checked ? "chosen" : undefined },
      make("td", { class: "drawn" }, box),
      make("td", { class: "number", "data-value": r.id }, r.id),
      make("td", { class: "equation" }, r.equation),
      number(numbers.A_in(r, length), 5),
      number(r.b, 5),
      number(energy_in(r.E), 5),
      k_cell(r, state.number("T"), at),
      make("td", { class: "unit" }, numbers.A_unit(r, length)),
      make("td", { class: "kind" }, physics.kind(r)),
      reverse_cell(r),
      make("td", { class: "efficiencies" }, numbers.efficiencies(r)),
    );
  }
  function show_rows() {
    const at = surroundings(S);
    rows = found_rows(at);
    $("reaction-head").replaceChildren(...head_cells());
    $("reaction-rows").replaceChildren(...rows.slice(0, shown).map((r) => row_of(r, at)));
    $("reaction-rows").querySelector("input")?.setAttribute("tabindex", "0");
    $("more").hidden = rows.length <= shown;
    $("more").textContent = `Show more: ${Math.min(shown, rows.length)} of ${rows.length}`;
    $("reaction-count").textContent = count_text(rows.length);
  }
  function count_text(found) {
    const all = S.gas_mechanism.reactions.length + S.surface_mechanism.reactions.length;
    const pairs = all - S.rows.length;
    return `${found} of ${S.rows.length} lines; a pair of forward and reverse is one line: ${pairs} pairs and ${S.rows.length - pairs} single are the ${all} reactions of the file`;
  }
  // All rows, for printing and saving; what it returns puts things back.
  function show_all() {
    const before = shown;
    shown = Infinity;
    show_rows();
    return () => {
      shown = before;
      show_rows();
    };
  }
  function whole_table() {
    const at = surroundings(S);
    const head = make("thead", {}, make("tr", {}, ...head_cells()));
    for (const button of head.querySelectorAll("button"))
      button.replaceWith(COLUMNS[button.dataset.sort].title());
    return make("table", {}, head, make("tbody", {}, ...rows.map((r) => row_of(r, at))));
  }

  // Only the marks change: the table and what one looks at stay where they are.
  function mark_chosen() {
    for (const box of $("reaction-rows").querySelectorAll("input")) {
      box.checked = ids().includes(box.dataset.reaction);
      box.closest("tr").classList.toggle("chosen", box.checked);
    }
  }

  // --- plots and numbers ---

  // In the other store: the reaction that the program holds against this one.
  function partner_reaction(r) {
    const place = comparison[`${r.phase}_reactions`][r.number - 1];
    const found = other[`${r.phase}_mechanism`].reactions[place];
    return found && other.rows.find((x) => x === found || x.backward === found);
  }
  const look_of = (c) => ({ colour: plots.colour(c), light: plots.COLOURS[c] });
  function look_at(store) {
    const [from, to] = state.range("from", "to");
    return { at: surroundings(store), from, to, length: state.values.length };
  }
  // The curves of a chosen reaction, and thin ones of the file that it is compared with.
  function all_curves(r, c) {
    const own = curves.of_reaction(r, look_at(S)).map((series) => ({ ...series, ...look_of(c) }));
    const partner = other && partner_reaction(r);
    if (!partner) return own;
    const theirs = curves.of_reaction(partner, look_at(other)).filter(({ style }) => style === undefined);
    return [
      ...own,
      ...theirs.map((s) => ({ ...s, ...look_of(c), label: `${s.label}, ${other.name}`, style: "ring" })),
    ];
  }

  const RATE_AXIS = {
    x: { name: "1000 K/T", unit: "" },
    place: (x) => `T = ${text(1000 / x)} K`,
    logarithmic: true,
  };
  const KINDS = { forward: "Rate constants", reverse: "Reverse rate constants" };
  function titled(title, series) {
    const equations = new Set(series.map((s) => s.equation));
    return equations.size === 1 ? `${title.replace(/s$/, "")} of ${[...equations][0]}` : title;
  }
  // One plot for each kind and unit.
  function plot_rates(holder, list) {
    const all = list.flatMap(all_curves);
    return Object.entries(KINDS).flatMap(([kind, title]) => {
      const groups = curves.by_unit(all.filter((s) => s.kind === kind));
      return groups.map(([unit, series], n) => {
        const id = `rates-${kind}${n ? `-${n + 1}` : ""}`;
        const compared = kind === "reverse" && series.some((s) => s.style === "band");
        const plot = {
          title: titled(title, series),
          unit,
          series,
          note: compared ? "Line: as stored; broad band: from equilibrium." : "",
          ...RATE_AXIS,
        };
        plots.draw(holder, id, plot);
        return id;
      });
    });
  }
  function plot_ratios(holder, list) {
    const series = list
      .map((r, c) => physics.has_stored_fit(r) && { ...curves.ratio(r, look_at(S)), ...look_of(c) })
      .filter(Boolean);
    const plot = {
      title: "Stored reverse rate over that from equilibrium",
      unit: "",
      x: { name: "T", unit: "K" },
      logarithmic: true,
      series,
      marks: { y: [1] },
    };
    return series.length && plots.draw(holder, "rates-ratio", plot) ? ["rates-ratio"] : [];
  }
  function plot_pressure(holder, list) {
    const T = state.number("T");
    const drawn = [];
    for (const [c, r] of list.entries()) {
      if (!physics.is_falloff(r) || physics.no_rate(r)) continue;
      const id = `rates-pressure-${r.id}`;
      const plot = {
        title: `${r.equation} at ${text(T)} K`,
        unit: units.rate_unit(physics.dimension(r), state.values.length),
        x: { name: "p", unit: "bar", logarithmic: true },
        logarithmic: true,
        series: curves
          .over_pressure(r, T, state.range("p_from", "p_to"), look_at(S))
          .map((series) => ({ ...series, ...look_of(c) })),
      };
      if (plots.draw(holder, id, plot)) drawn.push(id);
    }
    return drawn;
  }

  function numbers_panel(r) {
    const T = state.number("T");
    const cells = ([name, meaning, value, unit]) => [
      name,
      meaning,
      typeof value === "string" ? value : number(value, 5),
      unit,
    ];
    const stored = numbers.of_reaction(r).map(cells);
    if (r.backward) {
      stored.push(
        ...numbers.of_reaction(r.backward).map(([name, ...rest]) => cells([`reverse: ${name}`, ...rest])),
      );
    }
    const derived = numbers.derived(r, T, surroundings(S)).map(cells);
    return panel(
      `${r.id}: ${r.equation}`,
      build(["in the file", "", ["value"], "unit"], stored),
      derived.length ? build([`at ${text(T)} K`, "", ["value"], "unit"], derived) : null,
    );
  }

  function show_plots() {
    const holder = $("reaction-charts");
    const list = chosen(S);
    const drawn = [...plot_rates(holder, list), ...plot_ratios(holder, list), ...plot_pressure(holder, list)];
    plots.keep("rates-", drawn);
    const notes = list.map(curves.note).filter(Boolean).join(" ");
    $("reaction-note").textContent = list.length
      ? notes
      : "Choose reactions in the table to see their rates.";
    $("reaction-numbers").replaceChildren(...list.map(numbers_panel));
    $("to-plots").hidden = !list.length;
    $("to-plots").textContent = `${list.length} chosen: to the plots`;
  }

  // --- using it ---

  function choose(id, on) {
    const list = ids().filter((other_id) => other_id !== id);
    if (on) list.push(id);
    state.set({ reaction: list.slice(-MOST).join(",") });
  }
  // One stop of the tab key for the table: the arrows go on from there.
  function move(event, selector, back, forth) {
    const step = { [back]: -1, [forth]: 1 }[event.key];
    const list = [...event.currentTarget.querySelectorAll(selector)];
    const at = list.indexOf(document.activeElement);
    const next = step && at >= 0 && list[at + step];
    if (!next) return;
    event.preventDefault();
    list[at].tabIndex = -1;
    next.tabIndex = 0;
    next.focus();
  }
  function sort_by(id) {
    const { id: before, down } = sorting();
    state.set({ sort: (id === before && !down ? "-" : "") + id });
    document.querySelector(`[data-sort="${id}"]`).focus();
  }

  function start(store, compared_with, differences) {
    S = store;
    other = compared_with;
    comparison = differences;
    words = new Set([...S.names, ...S.partners].map((n) => n.toUpperCase()));
    const kinds = [
      ...(S.surface.species.length ? ["gas", "surface"] : []),
      ...new Set(S.rows.map(physics.kind)),
    ];
    $("reaction-kind").append(
      make("option", { value: "" }, "all"),
      ...kinds.map((k) => make("option", { value: k }, k)),
    );
    $("reaction-rows").addEventListener("change", (event) =>
      choose(event.target.dataset.reaction, event.target.checked),
    );
    $("reaction-rows").addEventListener("keydown", (event) => move(event, "input", "ArrowUp", "ArrowDown"));
    $("reaction-head").addEventListener(
      "click",
      (event) => event.target.dataset.sort && sort_by(event.target.dataset.sort),
    );
    $("reaction-head").addEventListener("keydown", (event) =>
      move(event, "button", "ArrowLeft", "ArrowRight"),
    );
    $("more").addEventListener("click", () => {
      shown += 500;
      show_rows();
    });
    $("worst").addEventListener("click", () => state.set({ sort: "-worst", filter: "", kind: "" }));
    $("clear").addEventListener("click", () => state.set({ reaction: "" }));
    $("to-plots").addEventListener("click", () => $("reaction-charts").scrollIntoView());
    $("reaction-menu").append(table.table_menu("reactions", whole_table));
  }
  // Shows what has changed.
  function show(changes = state.values) {
    const only_choice = Object.keys(changes).every((key) => key === "reaction");
    if (only_choice) mark_chosen();
    else show_rows();
    show_plots();
  }
  function find_again() {
    shown = FIRST;
  }

  return { start, show, show_all, find_again, count_text };
})();
