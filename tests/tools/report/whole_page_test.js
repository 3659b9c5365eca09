"use strict";
// All that the page of varpre-report says, as text, of some store files: VARPRE=... VARPRE_REPORT=... ROOT=... node --test
// whole_page_test.js. With UPDATE=1 it is written anew into expected/; read what has changed. What the numbers must be is the
// matter of page_test.js; this sees to it that they come where they belong.
const assert = require("node:assert/strict");
const { execFileSync } = require("node:child_process");
const fs = require("node:fs");
const os = require("node:os");
const path = require("node:path");
const { after, test } = require("node:test");
const { open } = require("./browserless.js");

const { VARPRE, VARPRE_REPORT, ROOT, UPDATE } = process.env;
const scratch = fs.mkdtempSync(path.join(os.tmpdir(), "varpre-page-"));
after(() => fs.rmSync(scratch, { recursive: true }));

function run(source, name, edits) {
  const directory = path.join(scratch, name);
  fs.cpSync(path.join(ROOT, source), directory, { recursive: true });
  for (const [file, before, after] of edits) {
    const text = fs.readFileSync(path.join(directory, file), "utf8");
    assert.ok(text.includes(before), before);
    fs.writeFileSync(path.join(directory, file), text.replace(before, after));
  }
  execFileSync(VARPRE, { cwd: directory, stdio: "ignore" });
  return directory;
}
// The page of a run after edits of its files, held against one after others where there are such.
function report({ source, name, edits = [], before: edits_before }) {
  const directory = run(source, name, edits);
  const before = edits_before ? [run(source, `${name}-before`, edits_before)] : [];
  execFileSync(VARPRE_REPORT, [directory, ...before, "--output", path.join(directory, "report.html")]);
  return fs.readFileSync(path.join(directory, "report.html"), "utf8");
}

// Curves as the places of some of their points, with what is dashed.
const point = ({ x, y, at, value }) =>
  [x, y, at, value ?? NaN].map((v) => (Number.isFinite(v) ? Number(v.toPrecision(6)) : "-")).join(" ");
function chart_lines(id, chart) {
  const { plot, axes, data } = chart;
  const ticks = (a) =>
    `${a.low.toPrecision(5)} to ${a.high.toPrecision(5)}: ${a.ticks.map(a.label).join(" ")}`;
  return [
    `plot ${id}: ${plot.title} / ${plot.unit}; ${plot.x.name} / ${plot.x.unit}; ${plot.note ?? ""}`,
    `  x ${ticks(axes.x)}; y ${ticks(axes.y)}; lines ${chart.lines_across()}`,
    ...data.datasets.map((d) => {
      const places = [0, 1, 40, 119, 120].filter((i) => d.data[i]);
      const dashed = d.data.map(
        (p, i) => i > 0 && Boolean(d.segment.borderDash({ p0: { raw: d.data[i - 1] }, p1: { raw: p } })),
      );
      return `  ${d.label} (${d.borderWidth}, ${dashed.filter(Boolean).length} dashed): ${places.map((i) => point(d.data[i])).join("; ")}`;
    }),
  ];
}
function shown(page) {
  const sections = [
    "settings-text",
    "settings-error",
    "overview",
    "species",
    "species-about",
    "species-values",
    "species-numbers",
    "species-charts",
    "reaction-count",
    "reaction-note",
    "reaction-head",
    "reaction-rows",
    "reaction-numbers",
    "reaction-charts",
    "more-data",
  ];
  const of_tab = {
    overview: ["overview"],
    species: sections.filter((s) => s.startsWith("species")),
    reactions: sections.filter((s) => s.startsWith("reaction")),
    "more-data": ["more-data"],
    compare: ["compare"],
  };
  const lines = of_tab[page.state.values.tab].flatMap((id) => page.elements.get(id).lines());
  const settings = ["settings-text", "settings-error"].flatMap((id) => page.elements.get(id).lines());
  const charts = Object.entries(page.plots.charts)
    .filter(([id]) => (id.startsWith("species") ? "species" : "reactions") === page.state.values.tab)
    .flatMap(([id, chart]) => chart_lines(id, chart));
  return [...settings, ...lines, ...charts];
}

const WHOLE = "T=900&from=250&to=3600&p=20&p_from=0.01&p_to=100";
const ONE = "OH+O=H+O2                   1.000E+13   0.00     0.000\n";
const OTHER = "OH+O=H+O2                   2.000E+12   0.50     5.000\n";
const CASES = [
  {
    source: "docs/every-section",
    views: [
      "",
      "#tab=more-data",
      `#species=OH,H2O&other=O2&${WHOLE}`,
      "#tab=species&species=PT(S),H(S)&T=100&logT=1&logy=1&energy=K",
      `#reaction=1,3,4,8,s1,s2&${WHOLE}`,
      "#reaction=6&mixture=right&length=cm&energy=kcal/mol&sort=-k",
      "#reaction=7&mixture=in H2O&p=50",
      "#tab=reactions&filter=consumes:OH&kind=gas&sort=A",
      "#tab=reactions&kind=falloff&sort=-worst",
    ],
  },
  {
    source: "examples/methane-counterflow",
    views: ["", "#tab=more-data", "#tab=reactions&sort=-worst&filter=HO2", "#reaction=1&energy=cal/mol"],
  },
  {
    source: "examples/hydrogen-ignition",
    views: ["", "#tab=species&species=H2o3,OH", "#tab=species&length=cm&energy=cal/mol"],
  },
  {
    // Of two reactions of one equation the second was the first, with another A.
    source: "docs/every-section",
    name: "compared",
    edits: [["MEC", "MAXI\n", `${ONE}${OTHER}MAXI\n`]],
    before: [
      ["MEC", "MAXI\n", `${OTHER}${ONE.replace("1.000", "1.100")}MAXI\n`],
      ["MEC", "3.870E+04   2.70", "7.740E+04   2.70"],
      ["INP", "H2*", "H2+"],
      ["INP", "OH  H2O  HO2  H2O2\nN2", "N2 H2O2\nHO2 H2O OH"],
      ["INP", "RO         0.01", "RO         0.02"],
    ],
    views: ["#tab=compare", "#reaction=9,11&T=900"],
  },
];

for (const given of CASES) {
  const { source, views, name = path.basename(source) } = given;
  test(name, () => {
    const page = open(report({ ...given, name }), ROOT);
    const text = views.flatMap((hash) => {
      page.state.show(hash);
      return [`=== ${hash}`, ...shown(page), ""];
    });
    const told = text
      .join("\n")
      .replace(/directory \| .*/, "directory |")
      .replace(/written \| .*/, "written |")
      .replace(/varpre-report \d[\d.]*/, "varpre-report");
    const file = path.join(__dirname, "expected", `${name}.txt`);
    if (UPDATE) fs.writeFileSync(file, told);
    const wanted = fs.readFileSync(file, "utf8").split("\n");
    for (const [i, line] of told.split("\n").entries()) assert.equal(line, wanted[i], `line ${i + 1}`);
    assert.equal(told.split("\n").length, wanted.length);
  });
}
