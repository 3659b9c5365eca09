"use strict";
// What differs from another store file, as the program has compared them: the largest effect first.
globalThis.compare = (() => {
  const { make, number } = table;
  const MOST_CHANGES = 12; // of one difference that are shown

  // The name of what differs: a link where this file has it.
  function name_of({ kind, which, after }, S, go) {
    if (after === null) return which;
    const mechanism = { reaction: S.gas_mechanism, "surface reaction": S.surface_mechanism }[kind];
    return make("td", {}, mechanism ? go.reaction(mechanism.reactions[after]) : go.species(which));
  }
  const cell = (told) => (typeof told === "number" ? number(told, 5) : (told ?? "none"));

  function rows_of(difference, S, go) {
    const rows = difference.changes
      .slice(0, MOST_CHANGES)
      .map(({ name, before, after, unit }) => ["", "", "", name, cell(before), cell(after), unit]);
    const more = difference.changes.length - MOST_CHANGES;
    if (more > 0) rows.push(["", "", "", `and ${more} more`, "", "", ""]);
    if (!rows.length) rows.push(Array(7).fill(""));
    rows[0].splice(0, 3, difference.kind, name_of(difference, S, go), difference.effect.text);
    return rows;
  }
  function show({ differences, notes }, S, O, go) {
    const count = differences.length;
    const title = `${S.name} against ${O.name}: ${count || "no"} difference${count === 1 ? "" : "s"}`;
    const columns = ["what", "which", "effect", "quantity", ["before"], ["after"], "unit"];
    table.$("compare").replaceChildren(
      table.panel(
        title,
        make("p", { class: "none" }, `Before: ${O.name}; after: ${S.name}. The largest effect comes first.`),
        ...notes.map((note) => make("p", { class: "none" }, `${note}; that means nothing.`)),
        count
          ? table.build(
              columns,
              differences.slice(0, 2000).flatMap((d) => rows_of(d, S, go)),
            )
          : "",
      ),
    );
  }
  return { show };
})();
