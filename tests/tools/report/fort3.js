"use strict";
// Reads a store file by its columns, apart from the reader in C++: what tests of the page hold its numbers against.
const fs = require("node:fs");

const number = (field) => {
  const text = field.trim();
  return Number(/[E]/.test(text) ? text : text.replace(/(\d)([+-]\d{3})$/, "$1E$2"));
};

// Fields of a width behind a column.
const fields = (line, column, width, count) =>
  Array.from({ length: count }, (_, i) => line.slice(column + i * width, column + (i + 1) * width));

function read(file) {
  const lines = fs.readFileSync(file, "latin1").split("\n");
  const find = (label, from = 0) => lines.findIndex((line, i) => i >= from && line.startsWith(label));
  // Five fields a line; the label takes twelve columns of the first.
  const list = (at, count, width, value = number) =>
    Array.from({ length: count }, (_, i) => {
      const [row, k] = [Math.floor(i / 5), i % 5];
      const column = (row === 0 ? 12 : 0) + k * width;
      return value(lines[at + row].slice(column, column + width));
    });
  const trimmed = (field) => field.trim();

  function phase(at) {
    const [species, elements] = [lines[at], lines[at + 1]].map((line) => Number(line.slice(0, 5)));
    if (species === 0) return { names: [], next: at + 2 };
    const names = find(" NSYMB", at);
    const [masses, symbols, atomic, fractions] = [" XMOL", " SYME", " EMOL", " XE  "].map((l) => find(l, at));
    return {
      names: list(names, species, 10, trimmed),
      masses: list(masses, species, 21),
      elements: list(symbols, elements, 10, trimmed),
      element_masses: list(atomic, elements, 21),
      mass_fractions: list(fractions, species * elements, 21),
      next: fractions + Math.ceil((species * elements) / 5),
    };
  }
  function thermo(at, count) {
    return Array.from({ length: count }, (_, i) => {
      const [first, second, third] = lines.slice(at + 3 * i, at + 3 * i + 3);
      const a = [...fields(first, 12, 12, 5), ...fields(second, 0, 12, 5), ...fields(third, 0, 12, 4)].map(
        number,
      );
      return { lower: a.slice(0, 7), upper: a.slice(7), limits: fields(third, 48, 11, 3).map(number) };
    });
  }
  const fit = (label) => fields(lines[find(label)], 12, 12, 4).map(number);
  const three = (n) => String(n).padStart(4);

  const gas = phase(4);
  const surface = phase(
    lines.findIndex((line, i) => i > 4 && / SPECIES *$/.test(line) && !/INERT/.test(line)),
  );
  const NG = gas.names.length;
  const codes = (at, count) => {
    const text = lines.slice(at, at + Math.ceil(count / 30)).map((line) => line.slice(12));
    return Array.from({ length: count }, (_, i) =>
      Number(text[Math.floor(i / 30)].slice(2 * (i % 30), 2 * (i % 30) + 2)),
    );
  };

  function gas_reactions(at, count) {
    return Array.from({ length: count }, (_, i) => {
      const [a, b, c, d] = lines.slice(at + 2 + 4 * i, at + 6 + 4 * i);
      const species = fields(a, 0, 6, 6).map(number);
      const [A, exponent, E] = fields(a, 39, 12, 3).map(number);
      const FALL = [...fields(c, 25, 12, 3), ...fields(d, 25, 10, 3), d.slice(56, 65), d.slice(66, 75)].map(
        number,
      );
      return {
        species,
        A,
        b: exponent,
        E,
        IARRH: number(b.slice(0, 6)),
        VT: fields(b, 39, 12, 3).map(number),
        FALL,
      };
    });
  }
  function surface_reactions(at, count) {
    return Array.from({ length: count }, (_, i) => {
      const [a, b, c] = lines.slice(at + 2 + 3 * i, at + 5 + 3 * i);
      const [A, exponent, E] = fields(b, 39, 12, 3).map(number);
      const [IARRH, ISTICK, ICOV] = fields(c, 0, 6, 3).map(number);
      const VT = fields(c, 39, 12, 3).map(number);
      return { species: fields(a, 0, 6, 12).map(number), A, b: exponent, E, IARRH, ISTICK, ICOV, VT };
    });
  }
  const mechanisms = lines
    .map((line, i) => (/ ELEMENTARY REACTIONS/.test(line) ? i : -1))
    .filter((i) => i >= 0);
  const reactions = mechanisms.map((at, k) => {
    const count = Number(lines[at].slice(0, 5));
    const list_of = k === 0 ? gas_reactions(at, count) : surface_reactions(at, count);
    const IREVER = codes(find(" IREVER", at), count);
    return list_of.map((r, i) => ({ ...r, IREVER: IREVER[i] }));
  });

  const partners = lines.map((line, i) => (line.startsWith(" EFF.") ? i : -1)).filter((i) => i >= 0);
  const total = NG + surface.names.length;
  const left = find(" T ,P ,X ");
  const right = find(" T ,P ,X ", left + 1);
  const mixture = (at) => {
    const values = list(at, 9 + total, 12);
    const gas_fractions = values.slice(3, 3 + NG);
    return {
      T: values[0],
      H: values[1],
      P: values[2],
      gas: gas_fractions,
      surface: values.slice(3 + NG, 3 + total),
      given: values.slice(3 + total),
    };
  };

  return {
    gas: { ...gas, thermo: thermo(find(" HL,HH("), NG) },
    surface: { ...surface, thermo: surface.names.length ? thermo(surface.next, surface.names.length) : [] },
    fit: (label, i) => fit(` ${label.padEnd(4)}(${three(i + 1)})`),
    diffusion: (i, j) => fit(` D(${three(Math.max(i, j) + 1)}${three(Math.min(i, j) + 1)})`),
    molecule: (label) => list(find(` ${label}`), NG, 12),
    reactions: reactions[0],
    surface_reactions: reactions[1] || [],
    efficiencies: partners.map((at) => list(at, NG, 12)),
    mixtures: [mixture(left), mixture(right)],
  };
}

module.exports = { read };
