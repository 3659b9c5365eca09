"use strict";
// What the page shows, as texts that stand behind # in its address: a link to it, back and reload show it again.
globalThis.state = (() => {
  const DEFAULTS = {
    tab: "",
    species: "",
    other: "",
    T: "1000",
    from: "200",
    to: "3000",
    p: "1",
    p_from: "0.001",
    p_to: "1000",
    mixture: "left",
    length: "m",
    energy: "kJ/mol",
    logT: "",
    logy: "",
    reaction: "",
    filter: "",
    kind: "",
    sort: "",
  };
  // Numbers that are taken, with their units.
  const LIMITS = {
    T: [200, 6000, "K"],
    from: [200, 6000, "K"],
    to: [200, 6000, "K"],
    p: [1e-6, 1e5, "bar"],
    p_from: [1e-6, 1e5, "bar"],
    p_to: [1e-6, 1e5, "bar"],
  };
  const NAMES = { T: "T", from: "T from", to: "T to", p: "p", p_from: "p from", p_to: "p to" };

  const values = { ...DEFAULTS };
  const defaults = (changes) => Object.assign(DEFAULTS, changes);
  const listeners = [];

  function read_address(hash) {
    const given = new URLSearchParams(hash.replace(/^#/, ""));
    for (const key of Object.keys(DEFAULTS)) values[key] = given.get(key) ?? DEFAULTS[key];
    if (!values.tab)
      values.tab =
        (given.has("reaction") && "reactions") || (given.has("species") && "species") || "overview";
  }
  function address() {
    const given = Object.entries(values).filter(([key, value]) => value !== DEFAULTS[key]);
    return `#${new URLSearchParams(given)}`;
  }

  // What is wrong with a number, empty where nothing is.
  function complaint(key, value) {
    const [low, high, unit] = LIMITS[key];
    const number = Number(value);
    if (value.trim() !== "" && number >= low && number <= high) return "";
    return `${NAMES[key]} must be from ${low} to ${high} ${unit}`;
  }
  const complaints = () => {
    const list = Object.keys(LIMITS)
      .map((key) => complaint(key, values[key]))
      .filter(Boolean);
    if (Number(values.from) >= Number(values.to)) list.push("T from must be below T to");
    if (Number(values.p_from) >= Number(values.p_to)) list.push("p from must be below p to");
    return list;
  };
  // A number that may be wrong counts as its default.
  const number = (key) => Number(complaint(key, values[key]) ? DEFAULTS[key] : values[key]);
  function range(from, to) {
    const given = [number(from), number(to)];
    return given[0] < given[1] ? given : [Number(DEFAULTS[from]), Number(DEFAULTS[to])];
  }

  // Changes values and tells the listeners; `step`: one that the browser's back takes back.
  function set(changes, step = true) {
    Object.assign(values, changes);
    if (step && address() !== location.hash) history.pushState(null, "", address());
    else history.replaceState(null, "", address());
    for (const listener of listeners) listener(changes);
  }
  const on_change = (listener) => listeners.push(listener);

  function show(hash) {
    read_address(hash);
    for (const listener of listeners) listener(values);
  }
  function start() {
    window.addEventListener("popstate", () => show(location.hash));
    show(location.hash);
  }

  return {
    values,
    defaults,
    set,
    on_change,
    start,
    show,
    read_address,
    address,
    complaint,
    complaints,
    number,
    range,
  };
})();
