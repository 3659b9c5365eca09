"use strict";
// Plots: what stands on their axes, how they look, how they are read and saved. Chart.js draws them on linear axes of
// moderate numbers: logarithms and powers of ten are taken off before, so that no value of a file is too much for it.
globalThis.plots = (() => {
  const { $, make } = table;
  const COLOURS = ["#0072b2", "#d55e00", "#009e73", "#cc79a7", "#b8860b", "#56b4e9"]; // told apart by the colour-blind
  const DARK = ["#56b4e9", "#ff8c42", "#3cc79d", "#e39cc4", "#f0c04a", "#9ad0f5"];
  const MOST_TICKS = 9;

  // --- axes ---

  const STEPS = [1, 2, 2.5, 5, 10];

  // Round numbers from `low` to `high`, at most some ten of them.
  function linear_ticks(low, high, most = MOST_TICKS) {
    if (!(high > low)) return [low];
    const rough = (high - low) / most;
    const size = 10 ** Math.floor(Math.log10(rough));
    const step = size * STEPS.find((s) => size * s >= rough * (1 - 1e-9));
    const first = Math.ceil(low / step - 1e-9);
    const count = Math.min(Math.floor(high / step + 1e-9) - first, 2 * most);
    const ticks = Array.from({ length: count + 1 }, (_, i) => Number(((first + i) * step).toPrecision(12)));
    return ticks.filter((tick, i) => i === 0 || tick > ticks[i - 1]);
  }

  // Of logarithms: decades, every so many where there are more than there is room for; within a decade round numbers.
  function logarithmic_ticks(low, high, most = MOST_TICKS) {
    if (high - low < 1)
      return linear_ticks(10 ** low, 10 ** high, most)
        .map(Math.log10)
        .filter(Number.isFinite);
    const every = [1, 2, 5, 10, 20, 50, 100].find((n) => (high - low) / n <= most) || 100;
    const ticks = [];
    for (let d = Math.ceil(low / every - 1e-9) * every + 0; d <= high + 1e-9; d += every) ticks.push(d);
    if (ticks.length > 2) return ticks;
    const finer = [];
    for (let d = Math.floor(low); d <= high; ++d) finer.push(...[1, 2, 5].map((m) => d + Math.log10(m)));
    return finer.filter((tick) => tick >= low - 1e-9 && tick <= high + 1e-9);
  }

  // How the values of an axis are laid out: from value to place and back, between which places, ticks and what
  // stands at them. Null where nothing can be drawn.
  function axis_of(values, logarithmic, margin = 0.04) {
    const usable = values.filter((v) => Number.isFinite(v) && (!logarithmic || v > 0));
    if (!usable.length) return null;
    const scale = logarithmic ? logarithmic_scale() : linear_scale(usable);
    let [low, high] = extent(usable.map(scale.place));
    if (!(high > low)) [low, high] = [low - scale.least, high + scale.least];
    else if (margin > 0) [low, high] = [low - (high - low) * margin, high + (high - low) * margin];
    return { ...scale, low, high, ticks: scale.ticks(low, high) };
  }
  const extent = (values) =>
    values.reduce(([a, b], x) => [Math.min(a, x), Math.max(b, x)], [Infinity, -Infinity]);
  const logarithmic_scale = () => ({
    place: (v) => (v > 0 ? Math.log10(v) : NaN),
    back: (x) => 10 ** x,
    label: (x) => (Number.isInteger(x) && Math.abs(x) > 3 ? `10${units.raised(x)}` : units.text(10 ** x, 10)),
    ticks: logarithmic_ticks,
    least: 0.3,
  });
  // Places are values over a power of ten; the least power leaves the smallest numbers what they are.
  function linear_scale(values) {
    const largest = values.reduce((most, v) => Math.max(most, Math.abs(v)), 0);
    const power = largest > 0 ? Math.max(Math.floor(Math.log10(largest)), -307) : 0;
    return {
      place: (v) => v / 10 ** power,
      back: (x) => x * 10 ** power,
      label: (x) => units.text(x * 10 ** power, 10),
      ticks: linear_ticks,
      least: 0.1,
    };
  }

  // --- points ---

  // f at equal steps; with `logarithmic` at equal factors.
  function sampled(from, to, f, { count = 120, logarithmic = false } = {}) {
    return Array.from({ length: count + 1 }, (_, i) => {
      const x = logarithmic ? from * (to / from) ** (i / count) : from + ((to - from) * i) / count;
      return { x, y: f(x) };
    });
  }

  // --- drawing ---

  const charts = {};
  const dark = () => matchMedia("(prefers-color-scheme: dark)").matches;
  const colour = (i) => (dark() ? DARK : COLOURS)[i % COLOURS.length];
  const is_inside = (limits, x) => !limits || (x >= limits[0] - 1e-6 && x <= limits[1] + 1e-6);
  const is_dashed = (series, a, b) => !is_inside(series.inside, a) || !is_inside(series.inside, b);

  // Lines across a plot: at some values of x, and of y.
  const marks = {
    id: "marks",
    beforeDatasetsDraw(chart, _, { x = [], y = [], colour: line }) {
      const { top, bottom, left, right } = chart.chartArea;
      chart.ctx.save();
      chart.ctx.strokeStyle = line;
      chart.ctx.setLineDash([2, 4]);
      chart.ctx.beginPath();
      for (const at of x
        .map((v) => chart.scales.x.getPixelForValue(v))
        .filter((v) => v >= left && v <= right)) {
        chart.ctx.moveTo(at, top);
        chart.ctx.lineTo(at, bottom);
      }
      chart.ctx.stroke();
      chart.ctx.setLineDash([]);
      chart.ctx.lineWidth = 1.5;
      chart.ctx.beginPath();
      for (const at of y
        .map((v) => chart.scales.y.getPixelForValue(v))
        .filter((v) => v >= top && v <= bottom)) {
        chart.ctx.moveTo(left, at);
        chart.ctx.lineTo(right, at);
      }
      chart.ctx.stroke();
      chart.ctx.restore();
    },
  };

  // Styles of a series: a plain line, a pale band below others, a thin line, one with rings.
  const STYLES = {
    line: { borderWidth: 2, pointRadius: 0 },
    band: { borderWidth: 7, pointRadius: 0 },
    thin: { borderWidth: 1, pointRadius: 0 },
    ring: { borderWidth: 1, pointRadius: (c) => (c.dataIndex % 12 === 0 ? 3 : 0) },
  };

  function dataset(series, i, axes) {
    const line = series.colour ?? colour(i);
    const shown = series.style === "band" ? `${line}55` : line;
    return {
      label: series.label,
      data: series.points.map((p) => ({
        x: axes.x.place(p.x),
        y: axes.y.place(p.y ?? NaN),
        at: p.x,
        value: p.y,
      })),
      borderColor: shown,
      backgroundColor: shown,
      ...STYLES[series.style || "line"],
      pointHoverRadius: 4,
      segment: { borderDash: (c) => (is_dashed(series, c.p0.raw.at, c.p1.raw.at) ? [5, 4] : undefined) },
    };
  }

  function scale(axis, title, soft, line) {
    return {
      type: "linear",
      min: axis.low,
      max: axis.high,
      title: { display: Boolean(title), text: title, color: soft, font: { size: 12 } },
      ticks: {
        color: soft,
        font: { size: 12 },
        autoSkip: false,
        maxRotation: 0,
        callback: axis.label,
      },
      grid: { color: line, borderColor: line },
      afterBuildTicks: (built) => {
        built.ticks = axis.ticks.map((value) => ({ value }));
      },
    };
  }

  const with_unit = (value, unit) => (unit ? `${value} ${unit}` : value);

  // How a place on the x axis is told: as the plot says, or with the name of the axis.
  const place_of = ({ x, place }, at) =>
    place ? place(at) : with_unit(`${x.name} = ${units.text(at)}`, x.unit);

  // What a plot says of one place on its x axis.
  function reading(plot, index) {
    const { unit, digits, series } = plot;
    const first = series.find((s) => s.points[index]);
    if (!first) return "";
    const at = first.points[index].x;
    const values = series
      .map((s) => [s, s.points[index]])
      .filter(([, p]) => p && p.x === at && p.y !== null && Number.isFinite(p.y))
      .map(
        ([s, p]) =>
          `${s.label} ${units.text(p.y, digits)}${is_inside(s.inside, at) ? "" : " (outside its limits)"}`,
      );
    return `${place_of(plot, at)}: ${with_unit(values.join("; "), unit)}`;
  }

  function empty_figure(id, plot) {
    const menu = table.menu(`save the plot ${plot.title}`, {
      "Save SVG": () => table.download(`${id}.svg`, svg(charts[id]), "image/svg+xml"),
      "Save PNG": () => save_png(charts[id], id),
      "Save CSV": () => table.download(`${id}.csv`, plot_csv(charts[id].plot), "text/csv"),
    });
    const readout = make("p", { class: "readout", "aria-live": "polite" });
    return make(
      "figure",
      { id },
      menu,
      make("figcaption", {}),
      make("div", { class: "canvas" }),
      readout,
      make("p", { class: "note" }),
    );
  }

  // Draws a plot into a figure of `holder`, or removes it where nothing is finite. A plot: title, unit, x {name,
  // unit, logarithmic}, logarithmic, series [{label, points [{x, y}], colour, style, inside [from, to]}], marks
  // {x, y}, digits, note, place (how an x is told). Outside `inside` a curve is dashed.
  function draw(holder, id, given) {
    const plot = { digits: 4, marks: {}, ...given };
    const all = plot.series.flatMap((s) => s.points);
    const axes = {
      x: axis_of(
        all.map((p) => p.x),
        plot.x.logarithmic,
        0,
      ),
      y: axis_of(all.map((p) => p.y ?? NaN).concat(plot.marks.y || []), plot.logarithmic),
    };
    const drawable = all.some((p) => Number.isFinite(axes.y?.place(p.y ?? NaN)));
    if (!axes.x || !drawable) return remove(id);
    charts[id]?.destroy();
    const figure = $(id) || holder.appendChild(empty_figure(id, plot));
    const [, caption, frame, readout, note] = figure.children;
    caption.replaceChildren(plot.title, " ", make("span", {}, plot.unit));
    const canvas = make("canvas", {
      tabindex: 0,
      role: "img",
      "aria-label": `${plot.title}${plot.unit ? ` in ${plot.unit}` : ""}; arrow keys read values`,
    });
    frame.replaceChildren(canvas);
    readout.textContent = "";
    const outside = plot.series.some((s) =>
      s.points.some((p) => Number.isFinite(p.y) && !is_inside(s.inside, p.x)),
    );
    note.textContent = [plot.note, outside && "Dashed: outside the limits."].filter(Boolean).join(" ");
    charts[id] = chart_of(canvas, plot, axes, readout);
    return charts[id];
  }

  function chart_of(canvas, plot, axes, readout) {
    const style = getComputedStyle(document.body);
    const soft = style.getPropertyValue("--soft").trim();
    const line = style.getPropertyValue("--line").trim();
    const chart = new Chart(canvas, {
      type: "line",
      data: { datasets: plot.series.map((s, i) => dataset(s, i, axes)) },
      options: {
        animation: false,
        parsing: false,
        normalized: true,
        responsive: true,
        maintainAspectRatio: false,
        interaction: { mode: "index", intersect: false },
        scales: {
          x: scale(axes.x, with_unit(plot.x.name, plot.x.unit && `/ ${plot.x.unit}`), soft, line),
          y: scale(axes.y, "", soft, line),
        },
        plugins: {
          legend: {
            display: plot.series.length > 1,
            position: "bottom",
            align: "start",
            labels: { color: soft, font: { size: 12 }, boxWidth: 24, boxHeight: 1 },
          },
          tooltip: {
            titleFont: { size: 12 },
            bodyFont: { size: 12 },
            callbacks: {
              title: (items) => place_of(plot, items[0].raw.at),
              label: (item) =>
                with_unit(`${item.dataset.label}: ${units.text(item.raw.value, plot.digits)}`, plot.unit),
            },
          },
          marks: {
            x: (plot.marks.x || []).map(axes.x.place),
            y: (plot.marks.y || []).map(axes.y.place),
            colour: soft,
          },
        },
        onHover: (_, active) => {
          if (active.length) readout.textContent = reading(plot, active[0].index);
        },
      },
      plugins: [marks],
    });
    Object.assign(chart, { plot, axes });
    read_with_keys(canvas, chart, readout);
    return chart;
  }

  const KEYS = { ArrowRight: 1, ArrowLeft: -1, PageUp: 10, PageDown: -10, Home: -Infinity, End: Infinity };
  function read_with_keys(canvas, chart, readout) {
    let index = -1;
    canvas.addEventListener("keydown", (event) => {
      const step = KEYS[event.key];
      const last = Math.max(...chart.data.datasets.map((d) => d.data.length)) - 1;
      if (step === undefined || last < 0) return;
      event.preventDefault();
      index = Math.min(Math.max(index < 0 ? 0 : index + step, 0), last);
      const active = chart.data.datasets
        .map((d, datasetIndex) => ({ datasetIndex, index, point: d.data[index] }))
        .filter(({ point }) => point && Number.isFinite(point.y));
      chart.setActiveElements(active);
      chart.tooltip.setActiveElements(active, { x: 0, y: 0 });
      chart.update();
      readout.textContent = reading(chart.plot, index);
    });
  }

  function remove(id) {
    charts[id]?.destroy();
    delete charts[id];
    $(id)?.remove();
    return null;
  }
  // Of the plots whose names begin so, those that are not wanted any more.
  function keep(prefix, wanted) {
    for (const id of Object.keys(charts)) if (id.startsWith(prefix) && !wanted.includes(id)) remove(id);
  }

  // --- saving ---

  // x and the series as columns.
  function plot_csv({ x, unit, series }) {
    const quoted = (s) => `"${s.replace(/"/g, '""')}"`;
    const head = [
      with_unit(x.name, x.unit && `/ ${x.unit}`),
      ...series.map((s) => with_unit(s.label, unit && `/ ${unit}`)),
    ];
    const points = series.reduce((most, s) => (s.points.length > most.length ? s.points : most), []);
    const rows = points.map((p, i) => [p.x, ...series.map((s) => s.points[i]?.y)].map(units.plain).join(","));
    return [head.map(quoted).join(","), ...rows, ""].join("\n");
  }

  const escaped = (text) => text.replace(/&/g, "&amp;").replace(/</g, "&lt;").replace(/>/g, "&gt;");
  const BOX = { width: 720, height: 440, left: 90, right: 20, top: 40, bottom: 60, line: 18 };

  // Runs of points that are drawn alike: [dashed, "x,y x,y ..."].
  function runs(series, place) {
    const list = [];
    for (const [i, b] of series.points.entries()) {
      const a = series.points[i - 1];
      if (!a) continue;
      const [from, to] = [place(a), place(b)];
      if (![...from, ...to].every(Number.isFinite)) continue;
      const dashed = is_dashed(series, a.x, b.x);
      const last = list.at(-1);
      if (last && last.end === i - 1 && last.dashed === dashed) last.points.push(to);
      else list.push({ dashed, points: [from, to] });
      list.at(-1).end = i;
    }
    return list.map(({ dashed, points }) => [
      dashed,
      points.map((p) => p.map((v) => v.toFixed(1)).join(",")).join(" "),
    ]);
  }

  // The plot as a drawing for papers: black on white.
  function svg({ plot, axes }) {
    const { width, left, top, line } = BOX;
    const [right, bottom] = [width - BOX.right, BOX.height - BOX.bottom];
    const X = (u) => left + ((u - axes.x.low) / (axes.x.high - axes.x.low)) * (right - left);
    const Y = (v) => bottom - ((v - axes.y.low) / (axes.y.high - axes.y.low)) * (bottom - top);
    const write = (x, y, anchor, words) =>
      `<text x="${x.toFixed(1)}" y="${y.toFixed(1)}" text-anchor="${anchor}">${escaped(words)}</text>`;
    const rule = (x1, y1, x2, y2, stroke) =>
      `<line x1="${x1.toFixed(1)}" y1="${y1.toFixed(1)}" x2="${x2.toFixed(1)}" y2="${y2.toFixed(1)}" stroke="${stroke}"/>`;
    const parts = [
      ...axes.x.ticks.map(
        (t) => rule(X(t), top, X(t), bottom, "#ddd") + write(X(t), bottom + line, "middle", axes.x.label(t)),
      ),
      ...axes.y.ticks.map(
        (t) => rule(left, Y(t), right, Y(t), "#ddd") + write(left - 8, Y(t) + 4, "end", axes.y.label(t)),
      ),
      ...(plot.marks.x || []).map((x) => rule(X(axes.x.place(x)), top, X(axes.x.place(x)), bottom, "#888")),
      ...(plot.marks.y || []).map((y) => rule(left, Y(axes.y.place(y)), right, Y(axes.y.place(y)), "#888")),
      `<rect x="${left}" y="${top}" width="${right - left}" height="${bottom - top}" fill="none" stroke="#000"/>`,
      write(left, top - line, "start", with_unit(plot.title, plot.unit && `/ ${plot.unit}`)),
      write(
        (left + right) / 2,
        bottom + 2 * line,
        "middle",
        with_unit(plot.x.name, plot.x.unit && `/ ${plot.x.unit}`),
      ),
    ];
    plot.series.forEach((s, i) => {
      const stroke = s.light ?? COLOURS[i % COLOURS.length];
      const look =
        {
          band: 'stroke-width="7" stroke-opacity="0.3"',
          thin: 'stroke-width="1"',
          ring: 'stroke-width="1" stroke-dasharray="1 2"',
        }[s.style] || 'stroke-width="2"';
      for (const [dashed, points] of runs(s, (p) => [X(axes.x.place(p.x)), Y(axes.y.place(p.y ?? NaN))])) {
        parts.push(
          `<polyline fill="none" stroke="${stroke}" ${look}${dashed ? ' stroke-dasharray="5 4"' : ""} points="${points}"/>`,
        );
      }
      const y = BOX.height + line * i;
      parts.push(
        `<path d="M${left} ${y - 4}h24" stroke="${stroke}" ${look}/>` + write(left + 32, y, "start", s.label),
      );
    });
    const height = BOX.height + line * plot.series.length;
    return (
      `<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 ${width} ${height}" font-family="sans-serif" font-size="12">\n` +
      `<rect width="${width}" height="${height}" fill="#fff"/>\n${parts.join("\n")}\n</svg>\n`
    );
  }

  // The drawing as pixels, twice as fine.
  function save_png(chart, id) {
    const image = new Image();
    image.onload = () => {
      const canvas = make("canvas", {
        width: 2 * BOX.width,
        height: (2 * BOX.width * image.height) / image.width,
      });
      canvas.getContext("2d").drawImage(image, 0, 0, canvas.width, canvas.height);
      canvas.toBlob((blob) => table.download(`${id}.png`, blob));
    };
    image.src = `data:image/svg+xml;charset=utf-8,${encodeURIComponent(svg(chart))}`;
  }

  return {
    COLOURS,
    charts,
    colour,
    draw,
    remove,
    keep,
    sampled,
    axis_of,
    linear_ticks,
    logarithmic_ticks,
    reading,
    plot_csv,
    svg,
  };
})();
