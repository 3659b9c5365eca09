"use strict";
(() => {
const { store: S, other: O } = JSON.parse(document.getElementById("data").textContent);
const R = 8.3143; // J/(mol K), of the solver
const BAR = 1e5;
const COLOURS = ["#0072b2", "#d55e00", "#009e73", "#cc79a7", "#e69f00", "#56b4e9"]; // told apart by the colour-blind
const DARK = ["#56b4e9", "#ff8c42", "#3cc79d", "#e39cc4", "#f0c04a", "#9ad0f5"];
const $ = (id) => document.getElementById(id);
const dark = () => matchMedia("(prefers-color-scheme: dark)").matches;
const colour = (i) => (dark() ? DARK : COLOURS)[i % COLOURS.length];

// --- elements and texts ---

function make(tag, attributes, ...children) {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes || {})) {
    if (name.startsWith("on")) element.addEventListener(name.slice(2), value);
    else if (value !== undefined && value !== false) element.setAttribute(name, value === true ? "" : value);
  }
  element.append(...children.filter((c) => c !== undefined && c !== null));
  return element;
}
const SMALL = { "-": "⁻", 0: "⁰", 1: "¹", 2: "²", 3: "³", 4: "⁴", 5: "⁵", 6: "⁶", 7: "⁷", 8: "⁸", 9: "⁹" };
function text(value, digits = 4) {
  if (value === null || value === undefined || Number.isNaN(value)) return "–";
  if (!Number.isFinite(value)) return value > 0 ? "∞" : "−∞";
  if (value === 0) return "0";
  const size = Math.abs(value);
  if (size >= 1e5 || size < 1e-3) {
    const [significand, exponent] = value.toExponential(digits - 1).split("e");
    const power = [...String(Number(exponent))].map((c) => SMALL[c]).join("");
    const factor = String(Number(significand)).replace("-", "−");
    return factor === "1" ? `10${power}` : `${factor}·10${power}`;
  }
  return String(Number(value.toPrecision(digits))).replace("-", "−");
}
const number = (value, digits) => make("td", { class: "number" }, text(value, digits));

// --- what a store holds, as functions of temperature ---

function prepare(store) {
  if (!store) return null;
  store.names = store.gas.species.concat(store.surface.species);
  store.index = new Map(store.names.map((name, i) => [name, i]));
  store.NG = store.gas.species.length;
  store.M = store.gas.molar_masses.concat(store.surface.molar_masses);
  store.thermo = store.gas.thermo.slice();
  store.surface.thermo.forEach((t, i) => { store.thermo[store.NG + i] = t; });
  store.partners = Object.keys(store.efficiencies);
  for (const [phase, mechanism] of [["gas", store.gas_mechanism], ["surface", store.surface_mechanism]]) {
    mechanism.reactions.forEach((r, i) => { r.phase = phase; r.number = i + 1; r.mechanism = mechanism; r.store = store; });
  }
  const is_reverse = (m) => new Set(m.reactions.map((r) => r.reverse).filter((x) => x !== undefined));
  store.rows = [];
  for (const mechanism of [store.gas_mechanism, store.surface_mechanism]) {
    const reverses = is_reverse(mechanism);
    mechanism.reactions.forEach((r, i) => { if (!reverses.has(i)) store.rows.push(r); });
  }
  // A collision partner's name says nothing: what counts are its efficiencies.
  const names = (r, list) => list.map((n) => (r.phase === "gas" && n > store.NG ? "M" : store.names[n - 1])).join(" + ");
  const seen = new Map();
  for (const r of store.rows) {
    const key = `${r.phase} ${names(r, r.educts)} ${r.reverse === undefined ? ">" : "="} ${names(r, r.products)}`;
    seen.set(key, (seen.get(key) || 0) + 1);
    r.key = key + " #" + seen.get(key);
  }
  return store;
}

// cp J/(mol K), h J/mol, s J/(mol K) of a species, from the range that holds or the one that is named.
function thermo(store, i, T, range) {
  const t = store.thermo[i];
  if (!t) return null;
  const a = range ? t[range] : T < t.limits[1] ? t.lower : t.upper;
  const M = store.M[i];
  return {
    cp: M * ((((a[4] * T + a[3]) * T + a[2]) * T + a[1]) * T + a[0]),
    h: M * (((((a[4] / 5 * T + a[3] / 4) * T + a[2] / 3) * T + a[1] / 2) * T + a[0]) * T + a[5]),
    s: M * ((((a[4] / 4 * T + a[3] / 3) * T + a[2] / 2) * T + a[1]) * T + a[0] * Math.log(T) + a[6]),
  };
}
function fit(c, T) {
  if (!c) return null;
  const x = Math.log(T);
  return Math.exp(c[0] + x * (c[1] + x * (c[2] + x * c[3])));
}
const pair = (i, j) => (i >= j ? i * (i + 1) / 2 + j : j * (j + 1) / 2 + i);

const rate = (r, T) => r.A * T ** r.b * Math.exp(-r.E / (R * T));
const reverse_of = (r) => (r.reverse === undefined ? null : r.mechanism.reactions[r.reverse]);
// Whether its stored reverse can be compared with the one from equilibrium.
const has_equilibrium = (r) => r.phase === "gas" && r.form === 0 && reverse_of(r) && reverse_of(r).form === 0 && !r.sticking;

function equilibrium_reverse(r, T) {
  let g = 0, dn = 0;
  for (const [list, sign] of [[r.educts, -1], [r.products, 1]]) {
    for (const n of list) {
      if (n > r.store.NG) continue; // a collision partner, on both sides
      const t = thermo(r.store, n - 1, T);
      if (!t) return null;
      g += sign * (t.h - T * t.s);
      dn += sign;
    }
  }
  return rate(r, T) * Math.exp(g / (R * T)) * (R * T / BAR) ** dn;
}
// The factor by which the stored reverse is off at worst from 500 to 2500 K, 1 or more.
function worst(r) {
  if (r.worst !== undefined) return r.worst;
  r.worst = null;
  if (has_equilibrium(r)) {
    r.worst = 0;
    for (let T = 500; T <= 2500; T += 100) {
      r.worst = Math.max(r.worst, Math.abs(Math.log(rate(reverse_of(r), T) / equilibrium_reverse(r, T))));
    }
    r.worst = Number.isNaN(r.worst) ? null : Math.exp(r.worst);
  }
  return r.worst;
}

const KINDS = { 0: "Arrhenius", 1: "coverage", 2: "falloff", 3: "Arrhenius", 4: "non-Arrhenius" };
const partner_of = (r) => (r.phase === "gas" ? r.educts.find((n) => n > r.store.NG) : undefined);
function kind(r) {
  if (r.sticking) return "sticking";
  if (Math.abs(r.form) === 0 && partner_of(r) !== undefined) return "three-body";
  return KINDS[Math.abs(r.form)] || "?";
}
function efficiencies(r) {
  const n = partner_of(r);
  if (n === undefined) return "";
  const row = r.store.efficiencies[r.store.partners[n - r.store.NG - 1]] || [];
  const counts = new Map();
  row.forEach((e) => counts.set(e, (counts.get(e) || 0) + 1));
  const usual = [...counts.entries()].sort((a, b) => b[1] - a[1])[0];
  const others = row.map((e, i) => [store_name(r, i), e]).filter(([, e]) => usual && e !== usual[0]).map(([n2, e]) => `${n2} ${text(e)}`);
  return [...others, usual ? `others ${text(usual[0])}` : ""].join(", ");
}
const store_name = (r, i) => r.store.names[i];
// A in cm, mol, s for one in m, mol, s.
function A_in(r, units) {
  if (units === "SI" || r.sticking) return r.A;
  const surface = r.phase === "surface" ? r.educts.filter((n) => n > r.store.NG).length : 0;
  const gas = r.educts.length - surface;
  return r.A * (r.phase === "gas" ? 1e6 ** (gas - 1) : 1e6 ** gas * 1e4 ** (surface - 1));
}

// --- charts ---

const charts = {};
window.varpreCharts = charts;

const marks = {
  id: "marks",
  afterDatasetsDraw(chart, _, options) {
    for (const x of options.at || []) {
      const at = chart.scales.x.getPixelForValue(x), { top, bottom, left, right } = chart.chartArea;
      if (!(at >= left && at <= right)) continue;
      chart.ctx.save();
      chart.ctx.strokeStyle = getComputedStyle(document.body).getPropertyValue("--soft");
      chart.ctx.setLineDash([2, 4]);
      chart.ctx.beginPath();
      chart.ctx.moveTo(at, top);
      chart.ctx.lineTo(at, bottom);
      chart.ctx.stroke();
      chart.ctx.restore();
    }
  },
};

// series: {label, points: [{x, y}], colour, dash}; `say` makes the readout of a point.
function draw(holder, id, { title, unit, xTitle = "T / K", xlog, ylog, series, at = [], digits = 4 }) {
  if (charts[id]) charts[id].destroy();
  let figure = $(id);
  if (!figure) {
    figure = make("figure", { id }, make("figcaption", {}), make("div", { class: "canvas" }), make("p", { class: "readout", "aria-live": "polite" }));
    holder.append(figure);
  }
  const [caption, frame, readout] = figure.children;
  caption.replaceChildren(title, " ", make("span", {}, unit));
  const canvas = make("canvas", { tabindex: 0, role: "img", "aria-label": `${title} in ${unit}; arrow keys read values` });
  frame.replaceChildren(canvas);
  readout.textContent = "";
  const style = getComputedStyle(document.body), soft = style.getPropertyValue("--soft").trim(), line = style.getPropertyValue("--line").trim();
  const scale = xTitle.startsWith("T") ? { min: 0 } : { min: 0.4, max: 2 };
  const axis = (log, axisTitle) => ({
    type: log ? "logarithmic" : "linear",
    ...(axisTitle && !log ? scale : {}),
    title: { display: Boolean(axisTitle), text: axisTitle, color: soft, font: { size: 12 } },
    ticks: { color: soft, font: { size: 12 }, maxTicksLimit: axisTitle ? 9 : 7, callback: (v) => text(v, 3) },
    grid: { color: line, borderColor: line },
  });
  const chart = new Chart(canvas, {
    type: "line",
    data: {
      datasets: series.map((s, i) => ({
        label: s.label, data: s.points.filter((p) => p.y !== null && Number.isFinite(p.y) && !(ylog && p.y <= 0)),
        borderColor: s.colour || colour(i), backgroundColor: s.colour || colour(i), borderDash: s.dash || [], borderWidth: 2, pointRadius: 0, pointHoverRadius: 4,
      })),
    },
    options: {
      animation: false, parsing: false, normalized: true, responsive: true, maintainAspectRatio: false,
      interaction: { mode: "index", intersect: false },
      scales: { x: axis(xlog, xTitle), y: axis(ylog, "") },
      plugins: {
        legend: { display: series.length > 1, position: "bottom", align: "start", labels: { color: soft, font: { size: 12 }, boxWidth: 28, boxHeight: 1 } },
        tooltip: {
          titleFont: { size: 12 }, bodyFont: { size: 12 },
          callbacks: { title: (items) => `${xTitle.split(" / ")[0]} = ${text(items[0].parsed.x)} ${xTitle.split(" / ")[1] || ""}`,
                       label: (item) => `${item.dataset.label}: ${text(item.parsed.y, digits)} ${unit}` },
        },
        marks: { at },
      },
      onHover: (_, active) => { if (active.length) tell(active[0].index); },
    },
    plugins: [marks],
  });
  function tell(index) {
    const first = chart.data.datasets.find((d) => d.data[index]);
    if (!first) return;
    const x = first.data[index].x;
    readout.textContent = `${xTitle.split(" / ")[0]} = ${text(x)} ${xTitle.split(" / ")[1] || ""}: ` + chart.data.datasets
      .map((d) => d.data.find((p) => p.x === x) && `${d.label} ${text(d.data.find((p) => p.x === x).y, digits)}`).filter(Boolean).join("; ") + ` ${unit}`;
  }
  let index = -1;
  canvas.addEventListener("keydown", (event) => {
    const step = { ArrowRight: 1, ArrowLeft: -1, PageUp: 10, PageDown: -10 }[event.key];
    const most = Math.max(0, ...chart.data.datasets.map((d) => d.data.length)) - 1;
    if (step === undefined || most < 0) return;
    event.preventDefault();
    index = Math.min(Math.max(index < 0 ? 0 : index + step, 0), most);
    const active = chart.data.datasets.map((d, datasetIndex) => ({ datasetIndex, index })).filter((a) => chart.data.datasets[a.datasetIndex].data[index]);
    chart.setActiveElements(active);
    chart.tooltip.setActiveElements(active, { x: 0, y: 0 });
    chart.update();
    tell(index);
  });
  charts[id] = chart;
  return readout;
}

function over_T(from, to, step, f) {
  const points = [];
  for (let T = from; T <= to + 1e-9; T += step) points.push({ x: T, y: f(T) });
  return points;
}

// --- overview ---

function table(head, rows, attributes = {}) {
  return make("table", attributes, make("thead", {}, make("tr", {}, ...head.map((h) => (h instanceof Node ? h : make("th", { class: Array.isArray(h) ? "number" : undefined }, Array.isArray(h) ? h[0] : h))))),
    make("tbody", {}, ...rows.map((cells) => make("tr", {}, ...cells.map((c) => (c instanceof Node ? c : make("td", {}, c)))))));
}
const panel = (title, ...content) => make("div", { class: "panel" }, make("h2", {}, title), ...content);

function atoms(store, i) {
  const n = store.gas.elements.length, counts = {};
  store.gas.elements.forEach((e, k) => { counts[e.toUpperCase()] = Math.round(store.gas.mass_fractions[i * n + k] * store.M[i] / store.gas.element_masses[k]); });
  return counts;
}
// Oxygen needed for CO2 and H2O over oxygen there; null where there is none or nothing to burn.
function equivalence_ratio(store, mixture) {
  let need = 0, have = 0;
  mixture.gas.forEach((x, i) => {
    const a = atoms(store, i);
    need += x * (2 * (a.C || 0) + (a.H || 0) / 2);
    have += x * (a.O || 0);
  });
  return need > 0 && have > 0 ? need / have : null;
}

function mixture_panel(store, mixture, name) {
  const mass = mixture.gas.map((x, i) => x * store.M[i]), sum = mass.reduce((a, b) => a + b, 0) || 1;
  const order = mixture.gas.map((x, i) => i).filter((i) => mixture.gas[i] > 0).sort((a, b) => mixture.gas[b] - mixture.gas[a]);
  const rows = order.map((i) => [store.names[i], number(mixture.gas[i]), number(mass[i] / sum),
    make("td", { class: "bars" }, make("i", { class: "mole", style: `width:${100 * mixture.gas[i]}%` }), make("i", { class: "mass", style: `width:${100 * mass[i] / sum}%` }))]);
  const surface = mixture.surface.map((x, i) => [store.surface.species[i], x]).filter(([, x]) => x > 0);
  const phi = equivalence_ratio(store, mixture);
  const W = mixture.gas.reduce((a, x, i) => a + x * store.M[i], 0);
  return panel(name,
    table(["", ["value"], "unit"], [["temperature", number(mixture.T, 5), "K"], ["pressure", number(mixture.P / BAR, 5), "bar"], ["enthalpy", number(mixture.H / 1000), "kJ/kg"],
      ["density", number(mixture.P * W / (R * mixture.T)), "kg/m³"],
      ...(phi === null ? [] : [["equivalence ratio", number(phi), ""]]),
      ...["PHI", "G", "v", "FREQ", "FAC", "OMEG"].filter((k) => mixture[k]).map((k) => [k, number(mixture[k]), "as given"])]),
    rows.length ? table(["gas", ["mole"], ["mass"], make("th", {}, make("span", { class: "key mole" }), "mole", make("span", { class: "key mass" }), "mass")], rows, { class: "fractions" }) : make("p", { class: "none" }, "no composition"),
    surface.length ? table(["surface", ["fraction"]], surface.map(([n, x]) => [n, number(x)])) : null);
}

const FLAME_UNITS = { RI: "m", RO: "m", TSTA: "s", TE: "s", SE: "J", SW: "m", ST: "s", STEP: "s", RS: "s", AMPL: "K", SIGM: "m", RMAX: "m" };
const SURFACE_UNITS = { TW: "K", SITE: "mol/m²" };
const value_rows = (list, units) => list.map(({ name, value }) => [name, number(value), units[name] || ""]);

function show_overview() {
  const counts = [["gas species", S.NG], ["surface species", S.surface.species.length], ["elements", S.gas.elements.length],
    ["gas reactions", S.gas_mechanism.reactions.length], ["surface reactions", S.surface_mechanism.reactions.length], ["collision partners", S.partners.length],
    ["complex, photo", `${S.complex_reactions.length}, ${S.photo_reactions.length}`]];
  const given = S.options.filter((o) => o.value !== 0);
  $("overview").replaceChildren(
    make("div", { class: "cards" }, ...counts.map(([name, count]) => make("div", { class: "card" }, make("b", {}, String(count)), make("span", {}, name)))),
    make("div", { class: "panels" },
      ...S.mixtures.map((m, i) => mixture_panel(S, m, i === 0 ? "Mixture on the left" : "Mixture on the right")),
      panel("Flame conditions", S.flame_conditions.length ? table(["", ["value"], "unit"], value_rows(S.flame_conditions, FLAME_UNITS)) : make("p", { class: "none" }, "not reached")),
      panel("Options", given.length ? make("ul", { class: "chips" }, ...given.map((o) => make("li", {}, `${o.name || "slot " + o.slot} ${o.value}`))) : make("p", { class: "none" }, "all 0")),
      panel("State of the file", make("p", {}, state_text(S)), make("p", { class: "none" }, `${S.lines} lines`))));
}
const state_text = (store) => (store.stopped ? `read up to line ${store.stopped.line}: ${store.stopped.reason}` : "complete");

// --- species ---

function range_of(store, i) {
  const t = store.thermo[i];
  return t && t.limits[2] > t.limits[0] ? [Math.max(200, Math.ceil((t.limits[0] + 20) / 25) * 25), Math.min(3500, t.limits[2])] : [200, 3000];
}

function show_species() {
  const name = $("species-name").value.trim(), other = $("species-other").value.trim();
  const i = S.index.get(name), holder = $("species-charts");
  if (i === undefined) { $("species-about").textContent = name ? `There is no species ${name}.` : "Choose a species."; return; }
  const T0 = Number($("species-T").value) || 1000;
  const [from, to] = range_of(S, i);
  const t = S.thermo[i], gas = i < S.NG;
  const jump = t && ["cp", "h", "s"].map((q) => {
    const low = thermo(S, i, t.limits[1], "lower")[q], high = thermo(S, i, t.limits[1], "upper")[q];
    const scale = { cp: low, h: R * t.limits[1], s: low }[q];
    return `${q} ${text(100 * (high - low) / scale, 3)} %${q === "h" ? " of RT" : ""}`;
  }).join(", ");
  const here = t ? thermo(S, i, T0) : null;
  const parts = [`${name}: ${text(1000 * S.M[i], 6)} g/mol, ${gas ? "gas" : "surface"}`, t && `Ranges meet at ${text(t.limits[1])} K; jump there: ${jump}`,
    here && `At ${text(T0)} K: cp ${text(here.cp)} J/(mol K), h ${text(here.h / 1000)} kJ/mol, s ${text(here.s)} J/(mol K)`,
    gas && S.transport.viscosity[i] && `Heat conductivity ${text(fit(S.transport.conductivity[i], T0))} W/(m K), viscosity ${text(fit(S.transport.viscosity[i], T0))} kg/(m s)`];
  $("species-about").textContent = parts.filter(Boolean).join(". ") + ".";
  const stores = [[S, S.name], ...(O && O.index.has(name) ? [[O, O.name]] : [])];
  const plot = (id, title, unit, f, wanted) => {
    const series = stores.map(([store, label], k) => ({ label: stores.length > 1 ? label : name, points: over_T(from, to, 25, (T) => f(store, store.index.get(name), T)), dash: k ? [6, 4] : [] }))
      .filter((s) => s.points.some((p) => p.y !== null && Number.isFinite(p.y)));
    if (!wanted || !series.length) { if (charts[id]) { charts[id].destroy(); delete charts[id]; } $(id)?.remove(); return; }
    draw(holder, id, { title, unit, series, at: t && ["cp", "h", "s"].includes(id.slice(8)) ? [t.limits[1]] : [], xlog: $("log-T").checked, ylog: $("log-y").checked });
  };
  plot("species-cp", "Heat capacity cp", "J/(mol K)", (s, k, T) => thermo(s, k, T)?.cp ?? null, true);
  plot("species-h", "Enthalpy h", "kJ/mol", (s, k, T) => { const x = thermo(s, k, T); return x ? x.h / 1000 : null; }, true);
  plot("species-s", "Entropy s", "J/(mol K)", (s, k, T) => thermo(s, k, T)?.s ?? null, true);
  plot("species-lambda", "Heat conductivity", "W/(m K)", (s, k, T) => fit(s.transport.conductivity[k], T), gas);
  plot("species-eta", "Viscosity", "kg/(m s)", (s, k, T) => fit(s.transport.viscosity[k], T), gas);
  const j = S.index.get(other);
  plot("species-D", `Diffusion in ${other} at 1 bar`, "m²/s", (s, k, T) => {
    const m = s.index.get(other), value = m === undefined || m >= s.NG ? null : fit(s.transport.diffusion[pair(k, m)], T);
    return value === null ? null : value / BAR;
  }, gas && j !== undefined && j < S.NG);
}

// --- reactions ---

const view = { sort: "number", down: false, shown: 200, rows: [] };
const chosen = new Set();
const COLUMNS = [["chosen", ""], ["number", "#"], ["equation", "Equation"], ["A", "A"], ["b", "b"], ["E", "E"], ["kind", "Kind"], ["worst", "Reverse off by"], ["efficiencies", "Efficiencies"]];

function matches(r) {
  const wanted = $("reaction-kind").value;
  if (wanted === "gas" || wanted === "surface" ? r.phase !== wanted : wanted && kind(r) !== wanted) return false;
  const names = r.equation.split(/ [+=>] /);
  return $("reaction-filter").value.trim().split(/\s+/).filter(Boolean)
    .every((word) => names.includes(word) || (!S.index.has(word) && r.equation.toLowerCase().includes(word.toLowerCase())));
}
function sort_value(r, units) {
  switch (view.sort) {
    case "A": return A_in(r, units);
    case "kind": return kind(r);
    case "worst": return worst(r) ?? 0;
    case "efficiencies": return efficiencies(r);
    case "chosen": return chosen.has(r) ? 0 : 1;
    case "number": return (r.phase === "gas" ? 0 : 1e6) + r.number;
    default: return r[view.sort];
  }
}
function sort_by(id) {
  view.down = view.sort === id && !view.down;
  view.sort = id;
  show_reactions();
  document.querySelector(`[data-sort="${id}"]`).focus();
}
function show_reactions() {
  const units = $("reaction-units").value;
  view.rows = S.rows.filter(matches).map((r) => [sort_value(r, units), r]);
  view.rows.sort(([a], [b]) => (a < b ? -1 : a > b ? 1 : 0) * (view.down ? -1 : 1));
  const head = { A: units === "SI" ? "A (m, mol, s)" : "A (cm, mol, s)", E: units === "SI" ? "E (J/mol)" : "E (kJ/mol)" };
  $("reaction-head").replaceChildren(...COLUMNS.map(([id, name]) => make("th", { "aria-sort": view.sort === id ? (view.down ? "descending" : "ascending") : "none", class: ["A", "b", "E", "worst", "number"].includes(id) ? "number" : undefined },
    make("button", { type: "button", "data-sort": id, "aria-label": `sort by ${name || "choice"}`, onclick: () => sort_by(id) }, (head[id] || name || "✓") + (view.sort === id ? (view.down ? " ▼" : " ▲") : "")))));
  $("reaction-rows").replaceChildren(...view.rows.slice(0, view.shown).map(([, r]) => reaction_row(r, units)));
  $("more").hidden = view.rows.length <= view.shown;
  $("reaction-count").textContent = `${view.rows.length} of ${S.rows.length} reactions; pairs of forward and reverse count once`;
}
function reaction_row(r, units) {
  const w = worst(r);
  const box = make("input", { type: "checkbox", "aria-label": `plot ${r.equation}`, onchange: () => choose(r, box.checked) });
  box.checked = chosen.has(r);
  return make("tr", { class: chosen.has(r) ? "chosen" : undefined, "data-number": `${r.phase} ${r.number}` }, make("td", {}, box), make("td", { class: "number" }, (r.phase === "surface" ? "s" : "") + r.number), make("td", { class: "equation" }, r.equation),
    number(A_in(r, units)), number(r.b), number(units === "SI" ? r.E : r.E / 1000), make("td", { class: "kind" }, kind(r)),
    make("td", { class: w > 1.5 ? "number off" : "number" }, w ? "× " + text(w, 3) : ""), make("td", { class: "efficiencies" }, efficiencies(r)));
}
function choose(r, on) {
  on ? chosen.add(r) : chosen.delete(r);
  while (chosen.size > 6) chosen.delete(chosen.values().next().value);
  show_reactions();
  document.querySelector(`[data-number="${r.phase} ${r.number}"] input`)?.focus();
  plot_reactions();
}
function plot_reactions() {
  const rates = [], ratios = [], holder = $("reaction-charts");
  [...chosen].forEach((r, i) => {
    const short = r.equation, back = reverse_of(r);
    const inverse = (f) => over_T(0.4, 2, 0.02, (x) => f(1000 / x)); // 2500 K to 500 K
    const series = (label, f, dash) => rates.push({ label, points: inverse(f), colour: colour(i), dash });
    series(`${short}${kind(r) === "falloff" ? " (high pressure)" : ""}`, (T) => rate(r, T), []);
    if (back && back.form >= 0 && back.A) series(`reverse of ${short}, stored`, (T) => rate(back, T), [8, 4]);
    if (has_equilibrium(r)) {
      series(`reverse of ${short}, from equilibrium`, (T) => equilibrium_reverse(r, T), [2, 3]);
      ratios.push({ label: short, points: over_T(500, 2500, 25, (T) => rate(back, T) / equilibrium_reverse(r, T)), colour: colour(i) });
    }
    const other = O && O.rows.find((x) => x.key === r.key);
    if (other) series(`${short} in ${O.name}`, (T) => rate(other, T), [12, 3, 2, 3]);
  });
  if (!rates.length) {
    for (const id of ["rates", "ratios"]) { charts[id]?.destroy(); delete charts[id]; }
    holder.replaceChildren(make("p", { class: "none" }, "Choose reactions in the table to see their rates."));
    return;
  }
  if (!$("rates")) holder.replaceChildren();
  draw(holder, "rates", { title: "Rate constants", unit: "m, mol, s", xTitle: "1000 K/T", series: rates, ylog: true });
  if (ratios.length) draw(holder, "ratios", { title: "Stored reverse over reverse from equilibrium", unit: "", series: ratios });
  else { charts.ratios?.destroy(); delete charts.ratios; $("ratios")?.remove(); }
}

// --- the other blocks ---

function formula(list, coefficients) {
  return list.map((n, i) => (n ? `${coefficients && coefficients[i] !== 1 ? text(coefficients[i]) + " " : ""}${S.names[n - 1] || "?"}` : "")).filter(Boolean).join(" + ");
}
function show_more_data() {
  const panels = [];
  if (S.surface_conditions.length) panels.push(panel("Surface conditions", table(["", ["value"], "unit"], value_rows(S.surface_conditions, SURFACE_UNITS))));
  if (S.complex_reactions.length) panels.push(panel("Complex reactions", table(["Equation", "Orders", ["A"], ["b"], ["E, J/mol"]], S.complex_reactions.map((r) =>
    [formula(r.species.slice(0, 3), r.coefficients) + " > " + formula(r.species.slice(3), r.coefficients.slice(3)), r.orders.slice(0, 3).map((x) => text(x)).join(", "), number(r.A), number(r.b), number(r.E)]))));
  if (S.photo_reactions.length) panels.push(panel("Photo reactions", table(["Equation", ["rate"]], S.photo_reactions.map((r) => [formula(r.species.slice(0, 1)) + " > " + formula(r.species.slice(1)), number(r.rate)]))));
  if (S.two_dimensional.length) panels.push(panel("Two-dimensional parameters", table(["", ["value"], ""], value_rows(S.two_dimensional, {}))));
  if (S.particles) {
    const names = ["XTROL", "VOLCH", "WAFSRK", "WAF", "PCRIT", "TCRIT", "TBOIL", "VPA", "VPB", "VPC", "VPD", "CA", "CB", "CC", "CD", "XDIAST", "ALPH", "BETA", "GAM"];
    panels.push(panel("Particles", make("p", {}, `grid size ${S.particles.grid}`),
      table(["", ...S.particles.species.map((n) => [n])], [["fraction", ...S.particles.fractions.map((x) => number(x))], ...names.map((n, k) => [n, ...S.particles.data.map((d) => number(d[k]))])])));
  }
  if (S.flags.some(Boolean)) panels.push(panel("Flagged species", table(["species", ["flag"]], S.flags.map((f, i) => [S.names[i], f]).filter(([, f]) => f).map(([n, f]) => [n, number(f)]))));
  $("more-data").replaceChildren(panels.length ? make("div", { class: "panels" }, ...panels) : make("p", { class: "none" }, "The file has none of these blocks."));
}

// --- comparison ---

function species_change(name) {
  const i = S.index.get(name), j = O.index.get(name);
  let size = 0, what = "";
  const note = (change, quantity) => { if (Number.isFinite(change) && Math.abs(change) > size) { size = Math.abs(change); what = quantity; } };
  for (let T = 300; T <= 2500; T += 200) {
    const a = thermo(S, i, T), b = thermo(O, j, T);
    if (a && b) {
      note(a.cp / b.cp - 1, "cp");
      note((a.h - b.h) / (R * T), "h, of RT");
      note((a.s - b.s) / R, "s, of R");
    }
    if (i < S.NG && j < O.NG) {
      note(fit(S.transport.conductivity[i], T) / fit(O.transport.conductivity[j], T) - 1, "heat conductivity");
      note(fit(S.transport.viscosity[i], T) / fit(O.transport.viscosity[j], T) - 1, "viscosity");
    }
  }
  return { size, text: `${what} by up to ${text(100 * size, 3)} %` };
}
function reaction_change(a, b) {
  let size = 0;
  for (let T = 500; T <= 2500; T += 250) size = Math.max(size, Math.abs(Math.log(Math.abs(rate(a, T) / rate(b, T)))) || 0);
  const x = reverse_of(a), y = reverse_of(b);
  for (let T = 500; x && y && T <= 2500; T += 250) size = Math.max(size, Math.abs(Math.log(Math.abs(rate(x, T) / rate(y, T)))) || 0);
  const others = JSON.stringify([a.form, a.values, a.falloff, a.b]) !== JSON.stringify([b.form, b.values, b.falloff, b.b]) || efficiencies(a) !== efficiencies(b);
  if (!size && !others) return null;
  return { size: size || 1e-9, text: size ? `rate by up to a factor of ${text(Math.exp(size), 4)}` : "falloff, coverage or efficiencies" };
}
function show_compare() {
  const changes = [];
  for (const name of S.names) {
    if (!O.index.has(name)) changes.push({ size: Infinity, kind: "species added", what: name, text: "" });
    else { const c = species_change(name); if (c.size > 1e-6) changes.push({ size: c.size, kind: "species", what: name, text: c.text, go: () => go_to_species(name) }); }
  }
  for (const name of O.names) if (!S.index.has(name)) changes.push({ size: Infinity, kind: "species removed", what: name, text: "" });
  const theirs = new Map(O.rows.map((r) => [r.key, r])), ours = new Set(S.rows.map((r) => r.key));
  for (const r of S.rows) {
    const go = () => { open_tab("reactions"); choose(r, true); };
    if (!theirs.has(r.key)) changes.push({ size: Infinity, kind: "reaction added", what: r.equation, text: "", go });
    else { const c = reaction_change(r, theirs.get(r.key)); if (c) changes.push({ size: c.size, kind: "reaction", what: r.equation, text: c.text, go }); }
  }
  for (const r of O.rows) if (!ours.has(r.key)) changes.push({ size: Infinity, kind: "reaction removed", what: r.equation, text: "" });
  const plain = (kindName, a, b) => a.forEach((x) => { const y = b.find((z) => z.name === x.name && z.slot === x.slot); if (y && y.value !== x.value) changes.push({ size: Math.abs(x.value - y.value) / (Math.abs(x.value) + Math.abs(y.value) || 1), kind: kindName, what: x.name || `slot ${x.slot}`, text: `${text(y.value)} → ${text(x.value)}` }); });
  plain("option", S.options, O.options);
  plain("flame condition", S.flame_conditions, O.flame_conditions);
  plain("surface condition", S.surface_conditions, O.surface_conditions);
  S.mixtures.forEach((m, k) => {
    const n = O.mixtures[k], side = k ? "right" : "left";
    if (!n) return;
    for (const q of ["T", "P", "H"]) if (m[q] !== n[q]) changes.push({ size: Math.abs(m[q] - n[q]) / (q === "H" ? 1e6 : Math.abs(n[q]) || 1), kind: `mixture, ${side}`, what: q, text: `${text(n[q])} → ${text(m[q])}` });
    for (const name of new Set([...S.gas.species, ...O.gas.species])) {
      const x = m.gas[S.gas.species.indexOf(name)] || 0, y = n.gas[O.gas.species.indexOf(name)] || 0;
      if (x !== y) changes.push({ size: Math.abs(x - y), kind: `mixture, ${side}`, what: name, text: `${text(y)} → ${text(x)}` });
    }
  });
  changes.sort((a, b) => b.size - a.size || 0);
  const rows = changes.slice(0, 2000).map((c) => [c.kind, make("td", {}, c.go ? make("button", { type: "button", class: "link", onclick: c.go }, c.what) : c.what), c.text]);
  $("compare").replaceChildren(make("div", { class: "panel wide" }, make("h2", {}, `${S.name} against ${O.name}: ${changes.length} ${changes.length === 1 ? "change" : "changes"}`),
    make("p", { class: "none" }, `${O.name}: ${state_text(O)}. The largest effect comes first; a click shows both curves.`),
    rows.length ? table(["What", "Which", "Change"], rows) : make("p", {}, "No difference.")));
}
function go_to_species(name) {
  $("species-name").value = name;
  open_tab("species");
}

// --- tabs ---

const shows = { overview: show_overview, species: show_species, reactions: () => { show_reactions(); plot_reactions(); }, "more-data": show_more_data, compare: show_compare };
const tabs = [["overview", "Overview"], ["species", "Species"], ["reactions", "Reactions"], ["more-data", "More"], ...(O ? [["compare", "Compare"]] : [])];
function open_tab(id) {
  for (const [name] of tabs) {
    $(name).hidden = name !== id;
    $("tab-" + name).setAttribute("aria-selected", name === id);
    $("tab-" + name).tabIndex = name === id ? 0 : -1;
  }
  shows[id]();
}
function start() {
  if (O && O.name === S.name) [S.name, O.name] = [S.path, O.path];
  prepare(S);
  prepare(O);
  document.title = `VARPRE report: ${S.name}`;
  $("title").title = O ? `${S.path} against ${O.path}` : S.path;
  $("title").textContent = O ? `${S.name} against ${O.name}` : S.name;
  $("state").textContent = S.stopped ? state_text(S) : `complete, ${S.lines} lines`;
  $("state").className = S.stopped ? "bad" : "";
  $("tabs").append(...tabs.map(([id, name]) => make("button", { type: "button", role: "tab", id: "tab-" + id, "aria-controls": id, onclick: () => open_tab(id) }, name)));
  $("tabs").addEventListener("keydown", (event) => {
    const step = { ArrowRight: 1, ArrowLeft: -1 }[event.key];
    if (!step) return;
    const at = tabs.findIndex(([id]) => $("tab-" + id) === document.activeElement);
    const next = tabs[(at + step + tabs.length) % tabs.length][0];
    open_tab(next);
    $("tab-" + next).focus();
  });
  $("species-list").append(...S.names.map((n) => make("option", { value: n })));
  $("gas-list").append(...S.gas.species.map((n) => make("option", { value: n })));
  $("species-name").value = S.names[0] || "";
  $("species-other").value = S.index.has("N2") && S.index.get("N2") < S.NG ? "N2" : S.gas.species[S.NG - 1] || "";
  for (const id of ["species-name", "species-other", "species-T", "log-T", "log-y"]) $(id).addEventListener("input", show_species);
  const kinds = [...new Set(S.rows.map(kind))];
  $("reaction-kind").append(make("option", { value: "" }, "all"), ...(S.surface.species.length ? ["gas", "surface"] : []).concat(kinds).map((k) => make("option", { value: k }, k)));
  const refresh = () => { view.shown = 200; show_reactions(); };
  $("reaction-filter").addEventListener("input", refresh);
  for (const id of ["reaction-kind", "reaction-units"]) $(id).addEventListener("change", refresh);
  $("more").addEventListener("click", () => { view.shown += 500; show_reactions(); });
  $("worst").addEventListener("click", () => { view.sort = "worst"; view.down = true; show_reactions(); });
  $("clear").addEventListener("click", () => { chosen.clear(); show_reactions(); plot_reactions(); });
  matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => open_tab(tabs.find(([id]) => !$(id).hidden)[0]));
  window.addEventListener("beforeprint", () => Object.values(charts).forEach((c) => c.resize()));
  open_tab("overview");
  document.documentElement.dataset.ready = "yes";
}
start();
})();
