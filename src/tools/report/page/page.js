"use strict";
// The page as a whole: its parts, its settings, what keys and the printer do.
(() => {
  const { $, make } = table;
  const data = JSON.parse($("data").textContent);
  const stores = [data.store, data.other]
    .filter(Boolean)
    .map((store) => Object.assign(physics.prepare(store), { version: data.version }));
  const [S, O] = stores;
  if (O && O.name === S.name) [S.name, O.name] = [S.path, O.path];
  window.varpreCharts = plots.charts;

  const tabs = Object.entries({
    overview: "Overview",
    species: "Species",
    reactions: "Reactions",
    "more-data": "More",
    ...(O ? { compare: "Compare" } : {}),
  });
  const with_settings = ["species", "reactions"];

  const link = (words, changes) =>
    make("button", { type: "button", class: "link", onclick: () => state.set(changes) }, words);
  const go = {
    species: (name) => link(name, { tab: "species", species: name }),
    reaction: (r) => link(r.equation, { tab: "reactions", reaction: r.id }),
  };

  const shows = {
    overview: () => overview.show(S, go),
    species: show_species,
    reactions: (changes) => reactions.show(changes),
    "more-data": () => overview.show_more(S),
    compare: () => compare.show(data.comparison, S, O, go),
  };
  // The diffusion coefficients, most of a large page, stand behind the script: they are read when species are first shown.
  let has_diffusion = false;
  function read_diffusion() {
    if (has_diffusion || document.readyState === "loading") return;
    const lists = JSON.parse($("diffusion").textContent);
    for (const [i, store] of stores.entries()) store.transport.diffusion = lists[i];
    has_diffusion = true;
  }
  function show_species() {
    read_diffusion();
    species.show(stores);
  }
  document.addEventListener("DOMContentLoaded", () => open === "species" && show_species());

  let open = "";
  function show_tab(changes) {
    const wanted = tabs.some(([id]) => id === state.values.tab) ? state.values.tab : "overview";
    for (const [id] of tabs) {
      $(id).hidden = id !== wanted;
      $(`tab-${id}`).setAttribute("aria-selected", id === wanted);
      $(`tab-${id}`).tabIndex = id === wanted ? 0 : -1;
    }
    $("settings").hidden = !with_settings.includes(wanted);
    shows[wanted](open === wanted ? changes : undefined);
    open = wanted;
  }

  // --- settings ---

  // Fields and the values of the state that they show. What is typed in one go is one step for "back".
  const FIELDS = {
    "species-name": "species",
    "species-other": "other",
    "log-T": "logT",
    "log-y": "logy",
    "reaction-filter": "filter",
    "reaction-kind": "kind",
    "set-T": "T",
    "set-from": "from",
    "set-to": "to",
    "set-p": "p",
    "set-p-from": "p_from",
    "set-p-to": "p_to",
    "set-mixture": "mixture",
    "set-length": "length",
    "set-energy": "energy",
  };
  function show_fields() {
    for (const [id, key] of Object.entries(FIELDS)) {
      const field = $(id);
      if (field.type === "checkbox") field.checked = Boolean(state.values[key]);
      else if (field.value !== state.values[key]) field.value = state.values[key];
    }
    for (const key of ["T", "from", "to", "p", "p_from", "p_to"]) {
      $(`set-${key.replace("_", "-")}`).setAttribute(
        "aria-invalid",
        Boolean(state.complaint(key, state.values[key])),
      );
    }
    const complaints = state.complaints();
    $("settings-error").textContent = complaints.length
      ? `${complaints.join("; ")}. The usual value is taken instead.`
      : "";
    const { T, from, to, p, mixture, length, energy } = state.values;
    $("settings-text").textContent =
      `${T} K · ${from} to ${to} K · ${p} bar, mixture ${mixture} · ${length}, mol, s · ${energy}`;
  }
  function watch_field(field, key) {
    let typing = false;
    const value = () => (field.type === "checkbox" ? (field.checked && "1") || "" : field.value);
    const take = () => {
      if (value() === state.values[key]) return;
      if (key === "filter" || key === "kind") reactions.find_again();
      state.set({ [key]: value() }, !typing);
    };
    field.addEventListener("input", () => {
      take();
      typing = field.tagName === "INPUT" && field.type !== "checkbox";
    });
    field.addEventListener("change", () => {
      take();
      typing = false;
    });
  }

  // --- starting ---

  function fill() {
    document.title = `VARPRE report: ${S.name}`;
    $("title").textContent = O ? `${S.name} against ${O.name}` : S.name;
    $("title").title = O ? `${S.path} against ${O.path}` : S.path;
    $("state").textContent = S.stopped ? overview.state_text(S) : `complete, ${S.lines} lines`;
    $("state").className = S.stopped ? "bad" : "";
    $("tabs").append(
      ...tabs.map(([id, name]) =>
        make(
          "button",
          {
            type: "button",
            role: "tab",
            id: `tab-${id}`,
            "aria-controls": id,
            onclick: () => state.set({ tab: id }),
          },
          name,
        ),
      ),
    );
    const options = (names) => names.map((n) => make("option", { value: n }));
    $("species-list").append(...options(S.names));
    $("gas-list").append(...options(S.gas.species));
    const pure = S.gas.species.map((n) => make("option", { value: `in ${n}` }, `pure ${n}`));
    $("set-mixture").append(
      make("option", { value: "left" }, "left"),
      make("option", { value: "right" }, "right"),
      ...pure,
    );
    $("set-energy").append(...Object.keys(units.ENERGIES).map((name) => make("option", {}, name)));
    state.defaults({
      species: S.names[0] || "",
      other: S.index.get("N2") < S.NG ? "N2" : S.gas.species.at(-1) || "",
    });
  }
  function walk_tabs(event) {
    const step = { ArrowRight: 1, ArrowLeft: -1 }[event.key];
    if (!step) return;
    const at = tabs.findIndex(([id]) => `tab-${id}` === document.activeElement.id);
    const [next] = tabs[(at + step + tabs.length) % tabs.length];
    state.set({ tab: next });
    $(`tab-${next}`).focus();
  }
  function print() {
    let put_back = null;
    window.addEventListener("beforeprint", () => {
      if (open === "reactions") put_back = reactions.show_all();
      for (const chart of Object.values(plots.charts)) chart.resize();
    });
    window.addEventListener("afterprint", () => {
      put_back?.();
      put_back = null;
    });
  }

  fill();
  reactions.start(S, O, data.comparison);
  for (const [id, key] of Object.entries(FIELDS)) watch_field($(id), key);
  $("tabs").addEventListener("keydown", walk_tabs);
  if (matchMedia("(max-width: 700px)").matches) $("settings").open = false;
  matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => show_tab());
  print();
  state.on_change((changes) => {
    show_fields();
    show_tab(changes);
  });
  state.start();
  document.documentElement.dataset.ready = "yes";
})();
