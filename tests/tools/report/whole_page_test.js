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

function report(source) {
  const directory = path.join(scratch, path.basename(source));
  fs.cpSync(path.join(ROOT, source), directory, { recursive: true });
  execFileSync(VARPRE, { cwd: directory, stdio: "ignore" });
  execFileSync(VARPRE_REPORT, [directory, "--output", path.join(directory, "report.html")]);
  return fs.readFileSync(path.join(directory, "report.html"), "utf8");
}

// Curves as the places of some of their points, with what is dashed.
const point = ({ x, y, at, value }) =>
  [x, y, at, value ?? NaN].map((v) => (Number.isFinite(v) ? Number(v.toPrecision(6)) : "-")).join(" ");
function chart_lines(id, { plot, axes, data, options }) {
  const ticks = (a) =>
    `${a.low.toPrecision(5)} to ${a.high.toPrecision(5)}: ${a.ticks.map(a.label).join(" ")}`;
  return [
    `plot ${id}: ${plot.title} / ${plot.unit}; ${plot.x.name} / ${plot.x.unit}; ${plot.note ?? ""}`,
    `  x ${ticks(axes.x)}; y ${ticks(axes.y)}; marks ${options.plugins.marks.x} ${options.plugins.marks.y}`,
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
  };
  const lines = of_tab[page.state.values.tab].flatMap((id) => page.elements.get(id).lines());
  const settings = ["settings-text", "settings-error"].flatMap((id) => page.elements.get(id).lines());
  const charts = Object.entries(page.plots.charts)
    .filter(([id]) => (id.startsWith("species") ? "species" : "reactions") === page.state.values.tab)
    .flatMap(([id, chart]) => chart_lines(id, chart));
  return [...settings, ...lines, ...charts];
}

const WHOLE = "T=900&from=250&to=3600&p=20&p_from=0.01&p_to=100";
const VIEWS = {
  "docs/every-section": [
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
  "examples/methane-counterflow": [
    "",
    "#tab=more-data",
    "#tab=reactions&sort=-worst&filter=HO2",
    "#reaction=1&energy=cal/mol",
  ],
  "examples/hydrogen-ignition": ["", "#tab=species&species=H2o3,OH", "#tab=species&length=cm&energy=cal/mol"],
};

for (const [source, views] of Object.entries(VIEWS)) {
  test(source, () => {
    const page = open(report(source), ROOT);
    const text = views.flatMap((hash) => {
      page.state.show(hash);
      return [`=== ${hash}`, ...shown(page), ""];
    });
    const told = text
      .join("\n")
      .replace(/directory \| .*/, "directory |")
      .replace(/written \| .*/, "written |")
      .replace(/varpre-report \d[\d.]*/, "varpre-report");
    const file = path.join(__dirname, "expected", `${path.basename(source)}.txt`);
    if (UPDATE) fs.writeFileSync(file, told);
    const wanted = fs.readFileSync(file, "utf8").split("\n");
    for (const [i, line] of told.split("\n").entries()) assert.equal(line, wanted[i], `line ${i + 1}`);
    assert.equal(told.split("\n").length, wanted.length);
  });
}
