"use strict";
// What the page of varpre-report computes and says, held against store files read by their columns (fort3.js), against
// MEC, and against formulas written another way: VARPRE=... VARPRE_REPORT=... ROOT=... node --test page_test.js
const assert = require("node:assert/strict");
const { execFileSync } = require("node:child_process");
const fs = require("node:fs");
const os = require("node:os");
const path = require("node:path");
const { after, test } = require("node:test");
const vm = require("node:vm");
const fort3 = require("./fort3.js");

const { VARPRE, VARPRE_REPORT, ROOT } = process.env;
const PAGE = path.join(ROOT, "src/tools/report/page");
const scratch = fs.mkdtempSync(path.join(os.tmpdir(), "varpre-page-"));
after(() => fs.rmSync(scratch, { recursive: true }));

// The files of the page that need no browser.
globalThis.document = { addEventListener() {} };
for (const name of "units physics search table plots numbers curves state overview".split(" ")) {
  const file = path.join(PAGE, `${name}.js`);
  vm.runInThisContext(fs.readFileSync(file, "utf8"), file);
}

// A run of a working directory: the store as the page gets it, and by columns.
const cases = new Map();
function run(source, edits = []) {
  const key = JSON.stringify([source, edits]);
  if (cases.has(key)) return cases.get(key);
  const directory = path.join(scratch, String(cases.size));
  fs.cpSync(path.join(ROOT, source), directory, { recursive: true });
  for (const [file, from, to] of edits) {
    const text = fs.readFileSync(path.join(directory, file), "latin1");
    assert.ok(text.includes(from), `${file} has ${from}`);
    fs.writeFileSync(path.join(directory, file), text.replace(from, to), "latin1");
  }
  execFileSync(VARPRE, { cwd: directory, stdio: "ignore" });
  execFileSync(VARPRE_REPORT, [directory, "--output", path.join(directory, "report.html")]);
  const html = fs.readFileSync(path.join(directory, "report.html"), "utf8");
  const [data, diffusion] = ["data", "diffusion"].map((id) =>
    JSON.parse(html.match(new RegExp(`id="${id}">(.*?)</script>`, "s"))[1]),
  );
  data.store.transport.diffusion = diffusion[0];
  const whole = {
    S: physics.prepare(data.store),
    F: fort3.read(path.join(directory, "fort.3")),
    data,
    directory,
  };
  cases.set(key, whole);
  return whole;
}
const HYDROGEN = "examples/hydrogen-ignition";
const CATALYTIC = "examples/catalytic-methane";
const EVERY = "docs/every-section";
const ALL = [HYDROGEN, CATALYTIC, "examples/methane-counterflow", EVERY];
const REVSIM = ["INP", "OPTIONS\n", "OPTIONS\nRevSim  1\n"];

const R = 8.3143;
function close(found, expected, what, relative = 1e-9) {
  if (expected === 0) assert.equal(found, 0, what);
  else assert.ok(Math.abs(found / expected - 1) < relative, `${what}: ${found} instead of ${expected}`);
}

// cp, h, s per mole by summing powers one by one.
function thermo_of(F, i, T) {
  const all = [...F.gas.thermo, ...F.surface.thermo];
  const masses = [...F.gas.masses, ...(F.surface.masses || [])];
  const a = T < all[i].limits[1] ? all[i].lower : all[i].upper;
  let [cp, h, s] = [0, a[5], a[6] + a[0] * Math.log(T)];
  for (let k = 0; k < 5; ++k) {
    cp += a[k] * T ** k;
    h += (a[k] * T ** (k + 1)) / (k + 1);
    if (k > 0) s += (a[k] * T ** k) / k;
  }
  return { cp: cp * masses[i], h: h * masses[i], s: s * masses[i] };
}
const fit_of = (c, T) => Math.exp(c.reduce((sum, value, k) => sum + value * Math.log(T) ** k, 0));
const k_of = (r, T) => r.A * T ** r.b * Math.exp(-r.E / R / T);

test("thermochemistry, transport and masses of every species", () => {
  for (const source of ALL) {
    const { S, F } = run(source);
    assert.deepEqual(S.names, [...F.gas.names, ...F.surface.names]);
    S.names.forEach((name, i) => {
      for (const T of [300, 999.9, 1000, 2100]) {
        const found = physics.thermo(S, i, T);
        const wanted = thermo_of(F, i, T);
        const scale = { cp: Math.abs(wanted.cp), h: R * T + Math.abs(wanted.h), s: R + Math.abs(wanted.s) };
        for (const q of ["cp", "h", "s"]) {
          assert.ok(Math.abs(found[q] - wanted[q]) <= 1e-9 * scale[q], `${q} of ${name} at ${T} K`);
        }
      }
    });
    for (const [i, name] of F.gas.names.entries()) {
      for (const [key, label] of [
        ["conductivity", "XLAM"],
        ["monoatomic_conductivity", "XLMO"],
        ["viscosity", "ETA"],
      ]) {
        close(physics.fit(S.transport[key][i], 800), fit_of(F.fit(label, i), 800), `${label} of ${name}`);
      }
      for (const j of [0, i, F.gas.names.length - 1]) {
        const wanted = fit_of(F.diffusion(i, j), 700) / 2e5;
        close(physics.diffusion(S, i, j, 700, 2e5), wanted, `D of ${name}, ${j}`);
      }
    }
  }
});

test("jumps where the ranges meet", () => {
  const { S, F } = run(HYDROGEN);
  F.gas.names.forEach((_, i) => {
    const at = F.gas.thermo[i].limits[1];
    const [below, above] = [thermo_of(F, i, at * (1 - 1e-12)), thermo_of(F, i, at)];
    const { cp, h, s } = physics.jumps(S, i);
    assert.ok(Math.abs(cp - (above.cp / below.cp - 1)) < 1e-9);
    assert.ok(Math.abs(h - (above.h - below.h) / (R * at)) < 1e-9);
    assert.ok(Math.abs(s - (above.s / below.s - 1)) < 1e-9);
  });
});

test("rate constants of every reaction, and their units", () => {
  for (const source of ALL) {
    const { S, F } = run(source);
    for (const [mechanism, columns] of [
      [S.gas_mechanism, F.reactions],
      [S.surface_mechanism, F.surface_reactions],
    ]) {
      assert.equal(mechanism.reactions.length, columns.length);
      mechanism.reactions.forEach((r, i) => {
        const c = columns[i];
        assert.equal(r.number, i + 1);
        assert.deepEqual(
          [r.form, r.pair_code, r.sticking || 0, r.coverage || 0],
          [c.IARRH, c.IREVER, c.ISTICK || 0, c.ICOV || 0],
        );
        const half = c.species.length / 2;
        assert.deepEqual(r.educts, c.species.slice(0, half).filter(Boolean));
        assert.deepEqual(r.products, c.species.slice(half).filter(Boolean));
        for (const T of [500, 1700]) close(physics.rate(r, T), k_of(c, T), `${r.equation} at ${T} K`);
      });
    }
  }
  const unit = (name) => {
    const { S } = run(CATALYTIC);
    const all = [...S.gas_mechanism.reactions, ...S.surface_mechanism.reactions];
    const r = all.find((x) => x.equation === name);
    return ["m", "cm"].map((length) => units.rate_unit(physics.dimension(r), length)).join("; ");
  };
  assert.equal(unit("H2 + O = H + OH"), "m³/(mol s); cm³/(mol s)");
  assert.equal(unit("O + O + M' = O2 + M'"), "m⁶/(mol² s); cm⁶/(mol² s)");
  assert.equal(unit("CO(S) + O(S) > PT(S) + CO2(S)"), "m²/(mol s); cm²/(mol s)");
  assert.equal(unit("CH4 + PT(S) + PT(S) > H(S) + CH3(S)"), "m⁵/(mol² s); cm⁵/(mol² s)");
});

test("A as MEC has it, in cm, mol, s", () => {
  for (const source of [HYDROGEN, "examples/methane-counterflow", CATALYTIC]) {
    const { S, directory } = run(source);
    const lines = fs.readFileSync(path.join(directory, "MEC"), "latin1").split("\n");
    const given = lines
      .slice(
        lines.findIndex((l) => l.startsWith("MECH")),
        lines.findIndex((l) => l.startsWith("COLL")),
      )
      .map((l) => l.match(/^([^!#$@*-][^!]*[=>][^!]*?)\s+([-\d.]+E[-+]\d+)\s+([-\d.]+)\s+([-\d.]+)/))
      .filter(Boolean);
    const rows = S.rows.filter((r) => r.phase === "gas");
    assert.ok(given.length > 20);
    for (const [, equation, A, b, E] of given) {
      const test_of = search.filter(equation, new Set());
      const known = rows.filter(test_of);
      assert.ok(known.length > 0, `${equation} is found as it stands in MEC`);
      const same = known.some(
        (r) =>
          Math.abs(numbers.A_in(r, "cm") / Number(A) - 1) < 1e-4 &&
          Math.abs(r.b - Number(b)) < 1e-3 &&
          Math.abs(r.E - 1000 * Number(E)) <= 1e-4 * Math.abs(r.E),
      );
      assert.ok(
        same,
        `${equation}: ${known.map((r) => [numbers.A_in(r, "cm"), r.b, r.E])} instead of ${A} ${b} ${E}`,
      );
    }
  }
});

test("falloff by its formula in cm, mol, s", () => {
  const { S, F } = run(EVERY);
  const r = S.rows.find((x) => x.equation === "OH + OH + M'' = H2O2 + M''");
  const [T, p] = [1300, 4e5];
  const fractions = F.mixtures[0].gas;
  // EFF of M'': H2O 6, all others 1 by TROE; mol/cm³.
  const M =
    (p / (R * T)) * 1e-6 * (fractions.reduce((a, x) => a + x, 0) + 5 * fractions[F.gas.names.indexOf("H2O")]);
  const high = 7.4e13 * T ** -0.37;
  const low = 2.3e18 * T ** -0.9 * Math.exp(7113 / R / T) * M;
  const [a, T3, T1, T2] = [0.735, 94, 1760, 5180]; // as printed with two decimals
  const centre = (1 - a) * Math.exp(-T / T3) + a * Math.exp(-T / T1) + Math.exp(-T2 / T);
  const log = Math.log10;
  const x = log(low / high) - 0.4 - 0.67 * log(centre);
  const F_ = 10 ** (log(centre) / (1 + (x / (0.75 - 1.27 * log(centre) - 0.14 * x)) ** 2));
  const found = physics.falloff(r, T, { p, fractions });
  close(found.high, high * 1e-6, "high", 1e-4);
  close(found.low, low * 1e-6, "low", 1e-4);
  close(found.F, F_, "F", 1e-6);
  close(found.k, ((high * low) / (high + low)) * F_ * 1e-6, "k", 1e-4);
  assert.equal(units.rate_unit(physics.dimension(r), "m"), "m³/(mol s)");
  close(numbers.A_in(r, "cm"), 7.4e13, "A in cm");
  close(numbers.A_in(r, "m"), 7.4e7, "A in m");
  assert.equal(numbers.A_unit(r, "m"), "m³/(mol s)");
  assert.deepEqual(numbers.of_reaction(r)[1].slice(2), [74, "10⁶ m³/(mol s)"]);
  assert.equal(numbers.A_unit(r, "cm"), "cm³/(mol s)");
  // Far out it is what its limits are; without broadening parameters F is 1.
  const far = (pressure) =>
    physics.falloff({ ...r, falloff: [...r.falloff.slice(0, 3), 0, 0, 0, 0, 0] }, T, {
      p: pressure,
      fractions,
    });
  close(far(1e12).k, far(1e12).high, "k at high pressure", 1e-3);
  close(far(1).k, far(1).low, "k at low pressure", 1e-3);
  assert.equal(far(1).F, 1);
  const centre_of = (...values) => physics.broadening_centre(values, 500);
  close(
    centre_of(0.6, 100, 1000, 2000, 0),
    0.4 * Math.exp(-5) + 0.6 * Math.exp(-0.5) + Math.exp(-4),
    "centre",
  );
  close(centre_of(0.6, 100, 1000, 0, 0), 1 + 0.4 * Math.exp(-5) + 0.6 * Math.exp(-0.5), "centre, T** 0");
  assert.equal(centre_of(0, 0, 0, 0, 0), 1);
  assert.equal(centre_of(0, 0, 0, 1e30, 0), 0);
  // The pure gas: its own efficiency counts.
  const water = F.gas.names.map((n) => (n === "H2O" ? 1 : 0));
  close(
    physics.partner_concentration(S, physics.partner_of(r), T, { p, fractions: water }),
    (6 * p) / (R * T),
    "[M] in H2O",
  );
  const plain_M = physics.partner_concentration(S, undefined, T, { p, fractions });
  close(plain_M, (p / (R * T)) * fractions.reduce((sum, y) => sum + y, 0), "[M] without a partner");
});

test("reverse rates from equilibrium, by concentrations in cm³ and bar", () => {
  for (const source of ALL) {
    const { S, F } = run(source);
    const NG = F.gas.names.length;
    let fitted = 0;
    for (const r of S.rows.filter(physics.has_stored_fit)) {
      const [c, back] = [F.reactions[r.number - 1], F.reactions[r.number]];
      const sum = (T, q, list) =>
        list.filter((n) => n > 0 && n <= NG).reduce((total, n) => total + thermo_of(F, n - 1, T)[q], 0);
      const [educts, products] = [c.species.slice(0, 3), c.species.slice(3)];
      const count = (list) => list.filter((n) => n > 0 && n <= NG).length;
      const reverse = (T) => {
        const [H, entropy] = ["h", "s"].map((q) => sum(T, q, products) - sum(T, q, educts));
        const moles = count(products) - count(educts);
        const Kc = Math.exp(entropy / R - H / (R * T)) * (83.143 * T) ** -moles; // mol/cm³
        return k_of(c, T) / (Kc * 1e6 ** moles); // m, mol, s
      };
      close(physics.reverse_from_equilibrium(r, 900), reverse(900), r.equation, 1e-8);
      close(physics.ratio_to_equilibrium(r, 900), k_of(back, 900) / reverse(900), r.equation, 1e-8);
      if (physics.origin(r) !== "fitted") continue;
      ++fitted;
      for (const T of physics.fit_temperatures(r))
        close(k_of(back, T), reverse(T), `${r.equation} at ${T} K`, 0.03);
      let worst = 1;
      for (let T = 500; T < 2550; T += 100)
        worst = Math.max(worst, reverse(T) / k_of(back, T), k_of(back, T) / reverse(T));
      close(physics.worst(r), worst, `${r.equation} at worst`, 1e-8);
    }
    assert.ok(
      source === EVERY ? fitted >= 2 : fitted > 20 || source.includes("methane-c"),
      `${source}: ${fitted} fitted`,
    );
  }
  const { S } = run(HYDROGEN);
  assert.deepEqual(physics.fit_temperatures(S.rows[2]), [580, 2500]);
});

test("where reverse rates come from", () => {
  const origins = (S) =>
    Object.fromEntries(
      [...new Set(S.rows.map(physics.origin))].map((o) => [
        o,
        S.rows.filter((r) => physics.origin(r) === o).length,
      ]),
    );
  const written = [
    "MEC",
    "O+H2=H+OH                   3.870E+04   2.70    26.192",
    "O+H2>H+OH                   3.870E+04   2.70    26.192\nH+OH>O+H2                   1.870E+04   2.50    18.192",
  ];
  const { S } = run(EVERY, [written]);
  assert.equal(physics.origin(S.rows[0]), "written");
  assert.equal(physics.worst(S.rows[0]), null);
  const stored = 1.87e-2 * 900 ** 2.5 * Math.exp(-18192 / R / 900);
  const ratio = stored / physics.reverse_from_equilibrium(S.rows[0], 900);
  close(physics.ratio_to_equilibrium(S.rows[0], 900), ratio, "another exponent", 1e-4);
  assert.equal(physics.worst(S.rows.find((r) => physics.origin(r) === "fitted")) > 1, true);
  assert.equal(physics.origin(S.rows.find((r) => r.form === 2)), "solver");
  assert.equal(physics.origin(S.rows.find((r) => !r.backward)), "");
  const left = run(EVERY, [REVSIM]).S;
  assert.deepEqual(Object.keys(origins({ rows: left.rows.filter((r) => r.phase === "gas") })).sort(), [
    "",
    "solver",
  ]);
  const r = left.rows[0];
  assert.equal(r.form, 3);
  assert.equal(physics.kind(r), "Arrhenius");
  assert.equal(physics.no_rate(r), "");
  assert.equal(physics.no_rate(r.backward), "computed by the solver");
  close(
    physics.reverse_from_equilibrium(r, 1000),
    physics.reverse_from_equilibrium(run(EVERY).S.rows[0], 1000),
    "RevSim",
  );
  const [copied] = run(EVERY, [["MEC", "H2+PT(S)+PT(S)>", "H2+PT(S)+PT(S)="]]).S.rows.filter(
    (x) => x.form === 1,
  );
  assert.equal(physics.origin(copied), "copied");
});

test("kinds, and what has no rate constant", () => {
  const { S } = run(EVERY);
  const by_kind = (k) => S.rows.find((r) => physics.kind(r) === k);
  assert.deepEqual(
    [...new Set(S.rows.map(physics.kind))],
    ["Arrhenius", "three-body", "falloff", "non-Arrhenius", "coverage", "sticking"],
  );
  assert.equal(physics.rate_constant(by_kind("non-Arrhenius"), 1000), null);
  assert.equal(physics.rate_constant(by_kind("sticking"), 1000), null);
  close(physics.sticking_as_given(by_kind("sticking")), 0.023, "sticking coefficient", 1e-4);
  assert.match(curves.note(by_kind("sticking")), /sticking coefficient 0.023, in the file as 0.02327;/);
  assert.match(curves.note(by_kind("non-Arrhenius")), /the solver has a law of its own/);
  assert.equal(curves.note(by_kind("Arrhenius")), "");
});

test("every number of species and reactions, under its label", () => {
  for (const source of ALL) {
    const { S, F } = run(source);
    for (const [i, name] of S.names.entries()) {
      const rows = numbers.of_species(S, name, F.gas.names[0]);
      const values = (label) => rows.filter((row) => row[0].startsWith(label)).map((row) => row[3]);
      const gas = i < F.gas.names.length;
      const phase = gas ? F.gas : F.surface;
      const k = gas ? i : i - F.gas.names.length;
      const n = phase.elements.length;
      assert.deepEqual(values("XMOL"), [phase.masses[k]]);
      assert.deepEqual(values("XE"), phase.mass_fractions.slice(n * k, n * k + n));
      assert.deepEqual(values("HL"), phase.thermo[k].lower);
      assert.deepEqual(values("HH"), phase.thermo[k].upper);
      assert.deepEqual(values("TLIM"), phase.thermo[k].limits);
      if (!gas) continue;
      for (const label of ["XLAM", "XLMO", "ETA"]) assert.deepEqual(values(label), F.fit(label, i));
      for (const label of ["EPS/K", "SIGMA", "DI1", "DI2", "DI3"])
        assert.deepEqual(values(label), [F.molecule(label)[i]]);
      assert.deepEqual(values("D "), F.diffusion(i, 0));
    }
    for (const [mechanism, columns] of [
      [S.gas_mechanism, F.reactions],
      [S.surface_mechanism, F.surface_reactions],
    ]) {
      mechanism.reactions.forEach((r, i) => {
        const c = columns[i];
        const rows = Object.fromEntries(numbers.of_reaction(r).map(([label, , value]) => [label, value]));
        assert.deepEqual(
          [rows.IARRH, rows.A, rows.b, rows.E, rows.IREVER],
          [c.IARRH, c.A, c.b, c.E, c.IREVER],
        );
        for (const [k, v] of c.VT.entries()) assert.equal(rows[`VT${k + 4}`] ?? 0, v);
        for (const [k, v] of (c.FALL || []).entries()) assert.equal(rows[`FALL${k + 1}`] ?? 0, v);
        assert.equal(rows.ISTICK, c.ISTICK ? S.names[c.ISTICK - 1] : undefined);
        assert.equal(rows.ICOV, c.ICOV ? S.names[c.ICOV - 1] : undefined);
      });
    }
    S.partners.forEach((partner, c) => {
      assert.deepEqual(S.efficiencies[partner], F.efficiencies[c]);
      const usual = Number(numbers.efficiency_text(S, partner).match(/others (\S+)$/)[1]);
      const told = Object.fromEntries(
        numbers
          .efficiency_text(S, partner)
          .split(", ")
          .map((words) => words.split(" ")),
      );
      for (const [i, name] of F.gas.names.entries()) {
        close(Number(told[name] ?? usual), F.efficiencies[c][i], `${partner} ${name}`, 1e-4);
      }
    });
    F.mixtures.forEach((m, k) => {
      const { T, H, P, gas, surface, PHI, G, v, FREQ, FAC, OMEG } = S.mixtures[k];
      assert.deepEqual({ T, H, P, gas, surface, given: [PHI, G, v, FREQ, FAC, OMEG] }, m);
    });
  }
});

test("what follows from the numbers of a reaction", () => {
  const { S, F } = run(EVERY);
  const at = { p: 2e5, fractions: F.mixtures[0].gas, surface: [0.25, 0, 0, 0, 0] };
  const told = (r) =>
    Object.fromEntries(
      numbers.derived(r, 1200, at).map(([label, what, value, unit]) => [`${label} ${what}`, [value, unit]]),
    );
  const three_body = told(S.rows.find((r) => physics.kind(r) === "three-body"));
  const M = F.efficiencies[1].reduce((sum, e, i) => sum + e * at.fractions[i], 0) * (2e5 / (R * 1200));
  close(three_body["[M] concentration of the collision partner"][0], M, "[M]");
  const falloff = told(S.rows.find((r) => physics.kind(r) === "falloff"));
  close(falloff["k∞ high-pressure limit"][0], 7.4e7 * 1200 ** -0.37, "k∞", 1e-4);
  assert.deepEqual(Object.keys(falloff).slice(0, 4), [
    "k rate constant at 2 bar",
    "k∞ high-pressure limit",
    "k₀[M] low-pressure limit times [M]",
    "F broadening",
  ]);
  assert.equal(falloff["k rate constant at 2 bar"][1], "m³/(mol s)");
  const sticking = told(S.rows.find((r) => r.sticking));
  close(sticking["γ sticking coefficient as given"][0], 0.023, "γ", 1e-4);
  const coverage = S.rows.find((r) => r.form === 1);
  const [a, m, E] = F.surface_reactions[coverage.number - 1].VT;
  assert.deepEqual([a, m, E], [0, -1, 0]);
  const with_theta = { ...coverage, values: [0.5, -1, 4000] };
  const k = k_of(F.surface_reactions[coverage.number - 1], 1200);
  const law = Math.exp(0.5 * 0.25 * Math.LN10 - Math.log(0.25) - (4000 * 0.25) / (R * 1200));
  const rows = told(with_theta);
  assert.equal(rows["θ coverage of PT(S)"][0], 0.25);
  close(rows["k without the coverage"][0], k, "k without");
  close(rows["k with the coverage: k · 10^(a θ) · θ^m · exp(−E θ/RT)"][0], k * law, "k with");
  const [first] = S.rows;
  close(told(first)["k rate constant"][0], k_of(F.reactions[0], 1200), "k");
  close(told(first)["reverse: k stored"][0], k_of(F.reactions[1], 1200), "stored reverse");
});

test("curves: labels, units, points and limits", () => {
  const { S, F } = run(EVERY);
  const look = { at: { p: 1e5, fractions: F.mixtures[0].gas }, from: 500, to: 2000, length: "cm" };
  const of = (kind) =>
    curves.of_reaction(
      S.rows.find((r) => physics.kind(r) === kind),
      look,
    );
  const [forward, stored, equilibrium] = of("Arrhenius");
  assert.deepEqual(
    [forward.unit, forward.kind, stored.kind, equilibrium.style],
    ["cm³/(mol s)", "forward", "reverse", "band"],
  );
  assert.equal(forward.points[0].x, 0.5);
  close(forward.points.at(-1).x, 2, "last x");
  close(forward.points[0].y, 3.87e4 * 2000 ** 2.7 * Math.exp(-26192 / R / 2000), "first point in cm", 1e-4);
  close(stored.points[0].y, 1e6 * k_of(F.reactions[1], 2000), "stored");
  assert.deepEqual(equilibrium.inside, [1000 / 3500, 1000 / 180]);
  assert.deepEqual(
    of("falloff").map((s) => s.style),
    [undefined, "band", "thin", "line"],
  );
  assert.match(of("falloff")[3].label, /the solver computes it$/);
  const [k, high, low] = of("falloff").map((s) => s.points[40].y);
  assert.ok(k < high && k < low);
  assert.equal(of("sticking").length, 0);
  assert.match(of("coverage")[0].label, /without the coverage$/);
  const groups = curves.by_unit(
    [...of("Arrhenius"), ...of("three-body")].filter((s) => s.kind === "forward"),
  );
  assert.deepEqual(
    groups.map(([unit, list]) => [unit, list.length]),
    [
      ["cm³/(mol s)", 1],
      ["cm⁶/(mol² s)", 1],
    ],
  );
  const pressures = curves.over_pressure(
    S.rows.find((r) => r.form === 2),
    1000,
    [0.01, 100],
    look,
  );
  assert.deepEqual(
    pressures.map((s) => [s.points[0].x, Math.round(s.points.at(-1).x)]),
    [
      [0.01, 100],
      [0.01, 100],
      [0.01, 100],
    ],
  );
  const falloff = S.rows.find((r) => r.form === 2);
  close(
    pressures[0].points.at(-1).y,
    1e6 * physics.falloff(falloff, 1000, { ...look.at, p: 1e7 }).k,
    "k at 100 bar",
  );
  const ratio = curves.ratio(S.rows[0], { from: 300, to: 900 });
  close(ratio.points[0].y, physics.ratio_to_equilibrium(S.rows[0], 300), "ratio");
  assert.match(ratio.label, /, fitted$/);
});

test("equivalence ratio and what a mixture is", () => {
  const { S } = run("examples/methane-counterflow");
  const of = (amounts) => {
    const sum = Object.values(amounts).reduce((a, b) => a + b, 0);
    return physics.equivalence_ratio(S, { gas: S.names.map((n) => (amounts[n] || 0) / sum) });
  };
  close(of({ CH4: 1, O2: 2, N2: 7.52 }).ratio, 1, "methane in air");
  close(of({ CH4: 1, O2: 4 }).ratio, 0.5, "lean");
  close(of({ H2: 4, O2: 1 }).ratio, 2, "rich hydrogen");
  assert.equal(of({ CH4: 1, O2: 2 }).note, "of its elements");
  assert.deepEqual(of({ CH4: 1, N2: 1 }), { ratio: null, note: "fuel without oxidiser" });
  assert.deepEqual(of({ O2: 1, N2: 1 }), { ratio: null, note: "oxidiser without fuel" });
  assert.deepEqual(of({ N2: 1 }), { ratio: null, note: "neither fuel nor oxidiser" });
  assert.equal(of({ CO2: 1, H2O: 2, O2: 1 }).note, "of its elements; burnt, no fuel left");
  close(of({ CO2: 1, H2O: 2, O2: 2 }).ratio, 0.5, "burnt lean");
  assert.equal(of({ CO: 1, H2: 2 }).note, "of its elements; no oxidiser left");
  assert.deepEqual(physics.atoms(S, S.index.get("CH4")), { C: 1, H: 4, O: 0, N: 0 });
});

test("numbers as texts", () => {
  for (const [value, text] of [
    [0, "0"],
    [1234.56, "1235"],
    [-0.5, "−0.5"],
    [1e5, "10⁵"],
    [-1e-7, "−10⁻⁷"],
    [1.5e-12, "1.5·10⁻¹²"],
    [99999.9, "100000"],
    [0.001, "0.001"],
    [0.00099, "9.9·10⁻⁴"],
    [null, "–"],
    [NaN, "–"],
    [Infinity, "∞"],
    [-Infinity, "−∞"],
    [1.7e308, "1.7·10³⁰⁸"],
  ])
    assert.equal(units.text(value), text);
  assert.equal(units.text(123456.789, 8), "1.2345679·10⁵");
  assert.deepEqual([1.5e-12, NaN, null, -3].map(units.plain), ["1.5e-12", "", "", "-3"]);
  const unit = (L, q) => units.rate_unit({ L, q }, "m");
  assert.deepEqual(
    [unit(0, 0), unit(3, 1), unit(6, 2), unit(-2, -1), unit(1, 0), unit(-3, -1)],
    ["1/s", "m³/(mol s)", "m⁶/(mol² s)", "mol/(m² s)", "m/s", "mol/(m³ s)"],
  );
  assert.deepEqual(
    [units.rate_factor({ L: 3 }, "cm"), units.rate_factor({ L: 3 }, "m"), units.rate_factor({ L: -2 }, "m")],
    [1e6, 1, 1],
  );
  const { ENERGIES, TRANSPORT } = units;
  assert.deepEqual(
    Object.entries(ENERGIES).map(([name, e]) => [name, e.energy, e.heat, e.heat_unit]),
    [
      ["kJ/mol", 1000, 1, "J/(mol K)"],
      ["J/mol", 1, 1, "J/(mol K)"],
      ["kcal/mol", 4184, 4.184, "cal/(mol K)"],
      ["cal/mol", 4.184, 4.184, "cal/(mol K)"],
      ["K", 8.3143, 8.3143, "R"],
    ],
  );
  assert.deepEqual(TRANSPORT, {
    conductivity: { m: [1, "W/(m K)"], cm: [0.01, "W/(cm K)"] },
    viscosity: { m: [1, "kg/(m s)"], cm: [10, "g/(cm s)"] },
    diffusion: { m: [1, "m²/s"], cm: [1e4, "cm²/s"] },
  });
});

test("finding reactions and species", () => {
  const { S } = run(HYDROGEN);
  const species = new Set([...S.names, ...S.partners].map((n) => n.toUpperCase()));
  const found = (text) => S.rows.filter(search.filter(text, species)).map((r) => r.equation);
  assert.deepEqual(found("O+H2=H+OH"), ["H2 + O = H + OH"]);
  assert.deepEqual(found("h + oh = h2 + o  3.87E+04 2.70 26.192 ! said the other way round"), [
    "H2 + O = H + OH",
  ]);
  assert.deepEqual(
    found("H+O2+M'=HO2+M'").length + found("H+O2+M''=HO2+M''").length + found("H+O2+M'''=HO2+M'''").length >
      0,
    true,
  );
  assert.ok(found("H+O2=").every((e) => /^H \+ O2 =|= H \+ O2$/.test(e)) && found("H+O2=").length > 0);
  assert.ok(
    found("H2 OH").every((e) => e.split(/ [+=>] /).includes("H2") && e.split(/ [+=>] /).includes("OH")),
  );
  const net = (name, sign) =>
    S.rows
      .filter((r) => {
        const [left, right] = r.equation
          .split(/ [=>] /)
          .map((side) => side.split(" + ").filter((n) => n === name).length);
        return sign * (right - left) > 0;
      })
      .map((r) => r.equation);
  assert.deepEqual(found("consumes:HO2"), net("HO2", -1));
  assert.deepEqual(found("produces:ho2"), net("HO2", 1));
  assert.ok(net("HO2", -1).length > 3 && net("HO2", 1).length > 1);
  assert.ok(found("OH+OH").length > 0 && found("OH + OH").every((e) => e.includes("OH + OH")));
  assert.deepEqual(found("#5"), [S.rows.find((r) => r.number === 5).equation]);
  assert.equal(found("").length, S.rows.length);
  assert.equal(found("XYZ").length, 0);
  assert.deepEqual(search.suggestions("HO3", S.names), ["HO2"]);
  assert.deepEqual(search.suggestions("h2o", S.names).slice(0, 2).sort(), ["H2O", "H2O2"]);
  assert.deepEqual(search.suggestions("ZZZZZ", S.names), []);
});

test("axes: ticks at round numbers and decades, few of them whatever the values are", () => {
  assert.deepEqual(plots.linear_ticks(0, 10), [0, 2, 4, 6, 8, 10]);
  assert.deepEqual(plots.linear_ticks(-0.3, 1.1, 5), [0, 0.5, 1]);
  assert.deepEqual(plots.logarithmic_ticks(-3.2, 2.1), [-3, -2, -1, 0, 1, 2]);
  assert.deepEqual(plots.logarithmic_ticks(0, 30), [0, 5, 10, 15, 20, 25, 30]);
  assert.deepEqual(
    plots.logarithmic_ticks(-0.1, 1.5).map((t) => Math.round(10 ** t)),
    [1, 2, 5, 10, 20],
  );
  assert.deepEqual(
    plots
      .logarithmic_ticks(Math.log10(0.9), Math.log10(1.2))
      .map((t) => Number((10 ** t).toFixed(6)))
      .slice(0, 3),
    [0.9, 0.95, 1],
  );
  for (const values of [
    [1.7e308, -1.7e308],
    [1e-320, 2e-320],
    [1e-320, 1.7e308],
    [0, 0],
    [5, 5],
    [1e-300, 1e300],
    [-1, 1 + 1e-15],
  ]) {
    for (const logarithmic of [false, true]) {
      const axis = plots.axis_of(values, logarithmic);
      if (!axis) continue;
      assert.ok(
        axis.ticks.length <= 20 && axis.high > axis.low && Number.isFinite(axis.high - axis.low),
        `${values}`,
      );
      for (const v of values.filter((x) => !logarithmic || x > 0)) {
        const place = axis.place(v);
        assert.ok(place >= axis.low && place <= axis.high);
        if (v > 1e-300) close(axis.back(place), v, "there and back", 1e-9);
      }
    }
  }
  assert.equal(plots.axis_of([NaN, Infinity], false), null);
  assert.equal(plots.axis_of([-1, 0], true), null);
  assert.equal(plots.axis_of([1e-8, 1e8], true).label(-5), "10⁻⁵");
  assert.equal(plots.axis_of([10, 20], false).label(1.5), "15");
  // What stands at a tick is where it is, however near the next one is.
  for (const [values, logarithmic, labels] of [
    [[0.98, 1.06], false, ["0.98", "0.99", "1", "1.01", "1.02", "1.03", "1.04", "1.05", "1.06"]],
    [[0.91, 1.1], false, ["0.925", "0.95", "0.975", "1", "1.025", "1.05", "1.075", "1.1"]],
    [[3000.1, 3000.3], false, ["3000.1", "3000.125", "3000.15", "3000.175", "3000.2"]],
    [[1e-5, 1.02e-5], true, ["10⁻⁵", "1.0025·10⁻⁵", "1.005·10⁻⁵"]],
  ]) {
    const { ticks, label } = plots.axis_of(values, logarithmic, 0);
    assert.deepEqual(ticks.map(label).slice(0, labels.length), labels);
  }
  const points = plots.sampled(1, 100, (x) => 2 * x, { count: 2, logarithmic: true });
  assert.deepEqual(points, [
    { x: 1, y: 2 },
    { x: 10, y: 20 },
    { x: 100, y: 200 },
  ]);
  assert.deepEqual(
    plots.sampled(0, 4, (x) => x + 1, { count: 2 }),
    [
      { x: 0, y: 1 },
      { x: 2, y: 3 },
      { x: 4, y: 5 },
    ],
  );
});

test("plots as text and as a drawing", () => {
  const plot = {
    title: "k <of> A",
    unit: "1/s",
    x: { name: "T", unit: "K" },
    digits: 4,
    marks: { y: [1] },
    series: [
      {
        label: 'a "b"',
        points: [
          { x: 0, y: 1 },
          { x: 5, y: NaN },
          { x: 10, y: 3 },
          { x: 20, y: 4 },
          { x: 30, y: 4 },
        ],
        inside: [0, 20],
      },
      { label: "c", points: [{ x: 0, y: 2 }] },
    ],
  };
  assert.equal(plots.plot_csv(plot), '"T / K","a ""b"" / 1/s","c / 1/s"\n0,1,2\n5,,\n10,3,\n20,4,\n30,4,\n');
  assert.equal(plots.reading(plot, 0), 'T = 0 K: a "b" 1; c 2 1/s');
  assert.equal(plots.reading(plot, 4), 'T = 30 K: a "b" 4 (outside its limits) 1/s');
  const all = [1, 3, 4];
  const axes = { x: plots.axis_of([0, 30], false, 0), y: plots.axis_of(all, false) };
  const svg = plots.svg({ plot, axes });
  assert.ok(svg.includes("k &lt;of&gt; A / 1/s"));
  const lines = [...svg.matchAll(/<polyline[^>]*points="([^"]*)"/g)].map((m) =>
    m[1].split(" ").map((p) => p.split(",").map(Number)),
  );
  assert.equal(lines.length, 2); // from 10 to 20 inside its limits, from there dashed
  assert.equal([...svg.matchAll(/<polyline[^>]*stroke-dasharray/g)].length, 1);
  const [left, right, top, bottom] = [90, 700, 40, 380];
  const X = (x) => left + (x / 30) * (right - left);
  const Y = (y) => bottom - ((y - (1 - 0.12)) / (3 * 1.08)) * (bottom - top);
  lines.flat().forEach(([x, y], i) => {
    const p = [
      [10, 3],
      [20, 4],
      [20, 4],
      [30, 4],
    ][i];
    assert.ok(Math.abs(x - X(p[0])) < 0.1 && Math.abs(y - Y(p[1])) < 0.1, `${x} ${y}`);
  });
});

test("the address holds what is shown", () => {
  state.defaults({ species: "H2", other: "N2" });
  state.read_address("#reaction=75&species=OH&T=1500");
  assert.deepEqual(
    [state.values.tab, state.values.reaction, state.values.species, state.number("T")],
    ["reactions", "75", "OH", 1500],
  );
  const address = state.address();
  state.read_address("");
  assert.deepEqual([state.values.tab, state.values.species, state.number("T")], ["overview", "H2", 1000]);
  state.read_address(address);
  assert.deepEqual([state.values.tab, state.values.reaction, state.number("T")], ["reactions", "75", 1500]);
  state.read_address("#species=CH3(S),OH");
  assert.deepEqual([state.values.tab, state.values.species], ["species", "CH3(S),OH"]);
  for (const [T, ok] of [
    ["50", false],
    ["-5", false],
    ["", false],
    ["x", false],
    ["200", true],
    ["6000", true],
    ["6001", false],
    ["NaN", false],
  ]) {
    state.read_address(`#T=${T}`);
    assert.equal(state.complaints().length === 0, ok, T);
    assert.equal(state.number("T"), ok ? Number(T) : 1000);
  }
  state.read_address("#from=2000&to=300&p_from=10&p_to=1");
  assert.equal(state.complaints().length, 2);
  assert.deepEqual(
    [state.range("from", "to"), state.range("p_from", "p_to")],
    [
      [200, 3000],
      [0.001, 1000],
    ],
  );
  state.read_address("#from=300&to=2000&p=0");
  assert.deepEqual(
    [state.range("from", "to"), state.complaints()],
    [[300, 2000], ["p must be from 0.000001 to 100000 bar"]],
  );
});

test("counts are explained", () => {
  assert.deepEqual(overview.bins([1, 1.02, 1.021, 1.3, 2, 3, 50]), [2, 1, 1, 2, 1]);
  const { S, F } = run(CATALYTIC);
  const words = overview.cards(S).map((card) => card.join(" "));
  let pairs = 0;
  for (let i = 0; i + 1 < F.reactions.length; ++i) {
    const [a, b] = [F.reactions[i].species, F.reactions[i + 1].species];
    if (String(a) !== String([...b.slice(3), ...b.slice(0, 3)])) continue;
    ++pairs;
    ++i;
  }
  assert.equal(
    words[1],
    `366 gas reactions in the file ${pairs} pairs of forward and reverse, ${366 - 2 * pairs} one way`,
  );
  assert.equal(words[0], "32 gas species 5 elements: H C O N AR");
});

test("tables as CSV", () => {
  const cell = (textContent, value) => ({
    textContent,
    dataset: value === undefined ? {} : { value },
    classList: { contains: () => false },
  });
  const drawn = { ...cell("bar"), classList: { contains: (name) => name === "drawn" } };
  const rows = [
    { cells: [cell("a, b"), cell("1.2·10⁵", "120000"), drawn] },
    { cells: [cell('=1+"x"'), cell("−5", "-5"), drawn] },
  ];
  assert.equal(table.csv({ rows }), '"a, b",120000\n"\'=1+""x""",-5\n');
  assert.equal(table.tabbed(rows), 'a, b\t120000\n=1+"x"\t-5');
});
