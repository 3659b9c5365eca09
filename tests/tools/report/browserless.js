"use strict";
// As much of a browser as the page of varpre-report needs to be built and read as text, without one.
const fs = require("node:fs");
const path = require("node:path");
const vm = require("node:vm");

class Node {}

class Element extends Node {
  constructor(tag) {
    super();
    Object.assign(this, {
      tag,
      attributes: {},
      nodes: [],
      listeners: {},
      value: "",
      hidden: false,
      parent: null,
    });
    this.tagName = tag.toUpperCase();
    this.classList = {
      contains: (name) => this.classes().includes(name),
      toggle: (name, on) => {
        const others = this.classes().filter((c) => c !== name);
        this.attributes.class = [...others, ...(on ? [name] : [])].join(" ");
      },
    };
  }
  classes() {
    return (this.attributes.class || "").split(" ").filter(Boolean);
  }
  setAttribute(name, value) {
    this.attributes[name] = String(value);
    if (name === "value" || name === "type" || name === "id") this[name] = String(value);
  }
  get dataset() {
    const data = Object.entries(this.attributes).filter(([name]) => name.startsWith("data-"));
    return Object.fromEntries(data.map(([name, value]) => [name.slice(5), value]));
  }
  get children() {
    return this.nodes.filter((n) => n instanceof Element);
  }
  get textContent() {
    return this.nodes.map((n) => (n instanceof Element ? n.textContent : n)).join("");
  }
  set textContent(text) {
    this.nodes = [String(text)];
  }
  adopt(nodes) {
    for (const node of nodes) if (node instanceof Element) node.parent = this;
    return nodes.map((n) => (n instanceof Element ? n : String(n)));
  }
  append(...nodes) {
    this.nodes.push(...this.adopt(nodes));
  }
  prepend(...nodes) {
    this.nodes.unshift(...this.adopt(nodes));
  }
  appendChild(node) {
    this.append(node);
    return node;
  }
  replaceChildren(...nodes) {
    this.nodes = this.adopt(nodes);
  }
  remove() {
    if (this.parent) this.parent.nodes = this.parent.nodes.filter((n) => n !== this);
  }
  replaceWith(node) {
    this.parent.nodes = this.parent.nodes.map((n) => (n === this ? node : n));
  }
  addEventListener(name, listener) {
    this.listeners[name] = listener;
  }
  all(tag) {
    return this.children.flatMap((c) => [...(c.tag === tag ? [c] : []), ...c.all(tag)]);
  }
  querySelectorAll(tag) {
    return this.all(tag);
  }
  querySelector(tag) {
    return this.all(tag)[0] ?? null;
  }
  closest(tag) {
    return this.tag === tag ? this : (this.parent?.closest(tag) ?? null);
  }
  get rows() {
    return this.all("tr");
  }
  get cells() {
    return this.children;
  }
  focus() {}
  // What one reads: a line for each row and block; a bar by its width.
  lines() {
    if (this.hidden || ["option", "select", "canvas"].includes(this.tag)) return [];
    if (this.tag === "tr")
      return [this.cells.map((cell) => cell.lines().join(" ") + cell.bars()).join(" | ")];
    const blocks = this.children.some((c) => !["span", "code", "b", "i", "button"].includes(c.tag));
    if (blocks)
      return this.nodes.flatMap((n) => (n instanceof Element ? n.lines() : [n])).filter((l) => l.trim());
    return this.textContent.trim() ? [this.textContent.trim()] : [];
  }
  bars() {
    const { value: plain } = this.dataset;
    const rounded = plain && Number.isFinite(Number(plain)) ? Number(Number(plain).toPrecision(8)) : plain;
    const value = plain === undefined ? "" : ` {${rounded}}`;
    return (
      this.all("i")
        .map((bar) => ` [${bar.attributes.style}]`)
        .join("") + value
    );
  }
}

class Chart {
  constructor(_, { data, options, plugins }) {
    Object.assign(this, { data, options, plugins });
  }
  // The lines across the plot, as from and to in a square of 100.
  lines_across() {
    const points = [];
    const nothing = () => {};
    const add = (...place) => points.push(place.map((v) => v.toFixed(2)).join());
    const ctx = {
      save: nothing,
      restore: nothing,
      setLineDash: nothing,
      beginPath: nothing,
      stroke: nothing,
    };
    const place = ({ min, max }, flip) => ({
      getPixelForValue: (v) => (flip ? (max - v) / (max - min) : (v - min) / (max - min)) * 100,
    });
    const { x, y } = this.options.scales;
    for (const plugin of this.plugins) {
      plugin.beforeDatasetsDraw(
        {
          ctx: { ...ctx, moveTo: add, lineTo: add },
          chartArea: { left: 0, right: 100, top: 0, bottom: 100 },
          scales: { x: place(x), y: place(y, true) },
        },
        {},
        this.options.plugins[plugin.id],
      );
    }
    return points.join(" ");
  }
  destroy() {}
  resize() {}
}

// The page of a report as an open window.
function open(html, root) {
  const elements = new Map();
  const find = (node, id) => node.children.map((c) => (c.id === id ? c : find(c, id))).find(Boolean) ?? null;
  const body = new Element("body");
  for (const [, tag, id] of html.matchAll(/<(\w+)[^>]* id="([^"]+)"/g))
    elements.set(id, Object.assign(new Element(tag), { id }));
  for (const id of ["data", "diffusion"])
    elements.get(id).textContent = html.match(new RegExp(`id="${id}">(.*?)</script>`, "s"))[1];
  const document = {
    body,
    documentElement: { dataset: {} },
    addEventListener() {},
    createElement: (tag) => new Element(tag),
    getElementById: (id) =>
      elements.get(id) ?? [...elements.values()].map((e) => find(e, id)).find(Boolean) ?? null,
    querySelector: () => new Element("button"),
  };
  const location = { hash: "" };
  const window = { addEventListener() {} };
  const set = (_, __, address) => {
    location.hash = address;
  };
  const context = vm.createContext({
    document,
    window,
    location,
    history: { pushState: set, replaceState: set },
    matchMedia: () => ({ matches: false, addEventListener() {} }),
    getComputedStyle: () => ({ getPropertyValue: () => "" }),
    URLSearchParams,
    Node,
    Chart,
  });
  const list = fs
    .readFileSync(path.join(root, "src/tools/report/CMakeLists.txt"), "utf8")
    .match(/set\(scripts ([^)]*)\)/)[1];
  for (const name of list.split(/\s+/)) {
    const file = path.join(root, "src/tools/report/page", `${name}.js`);
    vm.runInContext(fs.readFileSync(file, "utf8"), context, file);
  }
  return { elements, plots: context.plots, state: context.state, table: context.table };
}

module.exports = { open };
