"use strict";
// Finding reactions and species by what people type.
globalThis.search = (() => {
  const ARROW = /<?=+>?|->|>/;

  const names_of = (side) =>
    side
      .split("+")
      .map((name) => name.trim().toUpperCase())
      .filter(Boolean);

  // Names with how often they stand there.
  function counted(names) {
    const counts = new Map();
    for (const name of names) counts.set(name, (counts.get(name) || 0) + 1);
    return counts;
  }
  const contains = (side, wanted) => [...wanted].every(([name, count]) => (side.get(name) || 0) >= count);
  const same = (side, wanted) =>
    !wanted.size || (side.size === wanted.size && contains(side, wanted) && contains(wanted, side));

  // The sides of a reaction's equation, which has blanks around its signs.
  function sides(r) {
    r.sides ??= r.equation
      .split(/ [=>] /)
      .map((side) => counted(side.split(" + ").map((name) => name.toUpperCase())));
    return r.sides;
  }

  // An equation as it stands in MEC, with what may follow it there: A, b, E, a comment.
  function equation_test(text) {
    const line = text.replace(/!.*/, "").replace(/(\s+[-+]?[\d.]+(E[-+]?\d+)?)+\s*$/i, "");
    const [left, right] = line.split(ARROW).map((side) => counted(names_of(side)));
    return (r) => {
      const [educts, products] = sides(r);
      return (
        (same(educts, left) && same(products, right)) ||
        (r.backward !== undefined && same(educts, right) && same(products, left))
      );
    };
  }

  // consumes:X and produces:X, net, as the reaction is written from left to right.
  function net_test(name, sign) {
    return (r) => {
      const [educts, products] = sides(r);
      return sign * ((products.get(name) || 0) - (educts.get(name) || 0)) > 0;
    };
  }

  function word_test(word, species) {
    const [, what, name] = word.match(/^(consumes|produces):(.+)$/i) || [];
    if (name) return net_test(name.toUpperCase(), what.toLowerCase() === "consumes" ? -1 : 1);
    const upper = word.toUpperCase();
    if (word.includes("+")) {
      const wanted = counted(names_of(word));
      return (r) => sides(r).some((side) => contains(side, wanted));
    }
    if (species.has(upper)) return (r) => sides(r).some((side) => side.has(upper));
    return (r) =>
      r.id.toUpperCase() === upper.replace("#", "") ||
      (!/^#|^\d+$/.test(word) && r.equation.toUpperCase().includes(upper));
  }

  // A function that says whether a reaction is wanted. `species`: names in upper case.
  function filter(text, species) {
    if (ARROW.test(text)) return equation_test(text);
    const words = text
      .trim()
      .replace(/\s*\+\s*/g, "+")
      .split(/\s+/)
      .filter(Boolean);
    const tests = words.map((word) => word_test(word, species));
    return (r) => tests.every((test) => test(r));
  }

  // By how many insertions, removals and exchanges of characters two names differ.
  function distance(a, b) {
    let row = Array.from({ length: b.length + 1 }, (_, j) => j);
    for (let i = 1; i <= a.length; ++i) {
      const next = [i];
      for (let j = 1; j <= b.length; ++j) {
        next[j] = Math.min(row[j] + 1, next[j - 1] + 1, row[j - 1] + (a[i - 1] === b[j - 1] ? 0 : 1));
      }
      row = next;
    }
    return row[b.length];
  }

  // The names that may have been meant, the likeliest first.
  function suggestions(name, names, most = 5) {
    const upper = name.toUpperCase();
    const score = (other) => (other.startsWith(upper) ? 0.5 : distance(upper, other));
    return names
      .map((other) => [score(other.toUpperCase()), other])
      .filter(([d]) => d <= (name.length > 3 ? 2 : 1))
      .sort(([a], [b]) => a - b)
      .slice(0, most)
      .map(([, other]) => other);
  }

  return { filter, suggestions };
})();
