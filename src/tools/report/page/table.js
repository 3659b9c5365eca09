"use strict";
// Elements of the page, and tables that copy and download as plain numbers.
globalThis.table = (() => {
  const $ = (id) => document.getElementById(id);

  function make(tag, attributes, ...children) {
    const element = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes || {})) {
      if (name.startsWith("on")) element.addEventListener(name.slice(2), value);
      else if (value !== undefined && value !== false)
        element.setAttribute(name, value === true ? "" : value);
    }
    element.append(...children.filter((c) => c !== undefined && c !== null && c !== ""));
    return element;
  }

  // A cell that shows a number for people and keeps the plain one.
  const number = (value, digits, className = "number") =>
    make("td", { class: className, "data-value": units.plain(value) }, units.text(value, digits));

  // Columns and cells are texts or elements; a column given as [name] holds numbers.
  function rows_of(rows) {
    return rows.map((cells) =>
      make("tr", {}, ...cells.map((c) => (c instanceof Node ? c : make("td", {}, c)))),
    );
  }
  function build(columns, rows, attributes = {}) {
    const head = columns.map((c) => {
      if (c instanceof Node) return c;
      return Array.isArray(c) ? make("th", { class: "number" }, c[0]) : make("th", {}, c);
    });
    return make(
      "table",
      attributes,
      make("thead", {}, make("tr", {}, ...head)),
      make("tbody", {}, ...rows_of(rows)),
    );
  }

  // --- copying and downloading ---

  const value_of = (cell) => cell.dataset.value ?? cell.textContent.trim();

  // A field of CSV; a text that a spreadsheet would take for a formula is made a text.
  function field(cell) {
    const value = value_of(cell);
    const safe = cell.dataset.value === undefined && /^[=+\-@]/.test(value) ? `'${value}` : value;
    return /[",\n]/.test(safe) ? `"${safe.replace(/"/g, '""')}"` : safe;
  }
  const cells_of = (row) => [...row.cells].filter((cell) => !cell.classList.contains("drawn"));
  const csv = (element) => [...element.rows].map((row) => cells_of(row).map(field).join(",") + "\n").join("");
  const tabbed = (rows) => rows.map((row) => cells_of(row).map(value_of).join("\t")).join("\n");

  function download(name, content, type) {
    const url = URL.createObjectURL(content instanceof Blob ? content : new Blob([content], { type }));
    make("a", { href: url, download: name }).click();
    setTimeout(() => URL.revokeObjectURL(url), 10000);
  }

  let to_copy = null; // what the next copying takes instead of the selection
  function copy(text) {
    to_copy = text;
    document.execCommand("copy");
    to_copy = null;
  }
  // Rows that a person selects are copied as columns with plain numbers.
  document.addEventListener("copy", (event) => {
    let text = to_copy;
    if (text === null) {
      const selection = document.getSelection();
      if (selection.isCollapsed || selection.rangeCount === 0) return;
      const rows = [...selection.getRangeAt(0).cloneContents().querySelectorAll("tr")];
      if (!rows.length) return;
      text = tabbed(rows);
    }
    event.clipboardData.setData("text/plain", text);
    event.preventDefault();
  });

  // One stop for the keyboard: what to do with a table, or with a plot.
  function menu(label, actions) {
    const select = make(
      "select",
      { class: "menu", "aria-label": label },
      make("option", { value: "" }, "⋯"),
      ...Object.keys(actions).map((name) => make("option", {}, name)),
    );
    select.addEventListener("change", () => {
      actions[select.value]?.();
      select.value = "";
    });
    return select;
  }

  // `get`: the table at that time.
  function table_menu(name, get) {
    return menu(`copy or save ${name}`, {
      "Copy table": () => copy(tabbed([...get().rows])),
      "Download CSV": () => download(`${name}.csv`, csv(get()), "text/csv"),
    });
  }

  // A box with a heading; the first table in it can be copied.
  function panel(title, ...content) {
    const box = make("div", { class: "panel" }, make("h2", {}, title), ...content);
    const first = box.querySelector("table");
    if (first) box.prepend(table_menu(title, () => first));
    return box;
  }

  return { $, make, number, build, csv, tabbed, download, menu, table_menu, panel };
})();
