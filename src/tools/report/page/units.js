"use strict";
// Numbers as texts, and the units that they are shown in. What is passed in is SI, as in the store file.
globalThis.units = (() => {
  const R = 8.3143; // J/(mol K), the gas constant behind the store file
  const BAR = 1e5; // Pa
  const CALORIE = 4.184; // J

  // Of a molar energy, and of a heat capacity or entropy beside it: what one of the unit is in SI.
  const ENERGIES = {
    "kJ/mol": { energy: 1000, heat: 1, heat_unit: "J/(mol K)" },
    "J/mol": { energy: 1, heat: 1, heat_unit: "J/(mol K)" },
    "kcal/mol": { energy: 1000 * CALORIE, heat: CALORIE, heat_unit: "cal/(mol K)" },
    "cal/mol": { energy: CALORIE, heat: CALORIE, heat_unit: "cal/(mol K)" },
    K: { energy: R, heat: R, heat_unit: "R" },
  };

  // Of transport properties, in m or cm: the factor from SI and the unit.
  const TRANSPORT = {
    conductivity: { m: [1, "W/(m K)"], cm: [0.01, "W/(cm K)"] },
    viscosity: { m: [1, "kg/(m s)"], cm: [10, "g/(cm s)"] },
    diffusion: { m: [1, "m²/s"], cm: [1e4, "cm²/s"] },
  };

  const SMALL = { "-": "⁻", 0: "⁰", 1: "¹", 2: "²", 3: "³", 4: "⁴", 5: "⁵", 6: "⁶", 7: "⁷", 8: "⁸", 9: "⁹" };
  const raised = (integer) => [...String(integer)].map((c) => SMALL[c]).join("");
  const power = (name, exponent) => (exponent === 1 ? name : name + raised(exponent));

  // A number for people: 1.234·10⁻⁵, 0.012, −12.3.
  function text(value, digits = 4) {
    if (value === null || value === undefined || Number.isNaN(value)) return "–";
    if (!Number.isFinite(value)) return value > 0 ? "∞" : "−∞";
    if (value === 0) return "0";
    const size = Math.abs(value);
    if (size < 1e5 && size >= 1e-3) return String(Number(value.toPrecision(digits))).replace("-", "−");
    const [significand, exponent] = value.toExponential(digits - 1).split("e");
    const factor = String(Number(significand)).replace("-", "−");
    const ten = `10${raised(Number(exponent))}`;
    if (factor === "1") return ten;
    return factor === "−1" ? `−${ten}` : `${factor}·${ten}`;
  }

  // A number for programs, nothing where there is none.
  const plain = (value) => (typeof value === "number" && Number.isFinite(value) ? String(value) : "");

  // The unit of a rate constant, m^L/(mol^q s), and the factor from m to the length that is asked for.
  function rate_unit({ L, q }, length) {
    const above = [L > 0 && power(length, L), q < 0 && power("mol", -q)].filter(Boolean).join(" ") || "1";
    const below = [L < 0 && power(length, -L), q > 0 && power("mol", q), "s"].filter(Boolean);
    return `${above}/${below.length > 1 ? `(${below.join(" ")})` : below[0]}`;
  }
  const rate_factor = ({ L }, length) => (length === "cm" ? 100 ** L : 1);

  return { R, BAR, ENERGIES, TRANSPORT, raised, text, plain, rate_unit, rate_factor };
})();
