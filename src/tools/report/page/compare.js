"use strict";
// What differs from another store file.
globalThis.compare = (() => {
  const { make, number } = table;
  const { R, text } = units;

  function species_change(S, O, name) {
    const [i, j] = [S.index.get(name), O.index.get(name)];
    let size = 0;
    let what = "";
    const note = (change, quantity) => {
      if (Number.isFinite(change) && Math.abs(change) > size) [size, what] = [Math.abs(change), quantity];
    };
    for (let T = 300; T <= 2500; T += 200) {
      const [a, b] = [physics.thermo(S, i, T), physics.thermo(O, j, T)];
      if (a && b) {
        note(a.cp / b.cp - 1, "cp");
        note((a.h - b.h) / (R * T), "h, of RT");
        note((a.s - b.s) / R, "s, of R");
      }
      if (i < S.NG && j < O.NG) {
        note(
          physics.fit(S.transport.conductivity[i], T) / physics.fit(O.transport.conductivity[j], T) - 1,
          "heat conductivity",
        );
        note(
          physics.fit(S.transport.viscosity[i], T) / physics.fit(O.transport.viscosity[j], T) - 1,
          "viscosity",
        );
      }
    }
    return { size, text: `${what} by up to ${text(100 * size, 3)} %` };
  }
  function show(S, O) {
    const rows = S.names
      .filter((name) => O.index.has(name))
      .map((name) => [name, species_change(S, O, name)])
      .filter(([, c]) => c.size > 1e-6)
      .map(([name, c]) => [name, number(c.size), c.text]);
    table
      .$("compare")
      .replaceChildren(
        make("div", { class: "panel wide" }, table.build(["species", ["size"], "change"], rows)),
      );
  }
  return { show };
})();
