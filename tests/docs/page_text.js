"use strict";
// The overview of a report as text, a line each: page_text.js REPORT. Values as they are shown, without the bars.
const fs = require("node:fs");
const path = require("node:path");
const { open } = require("../tools/report/browserless.js");

const page = open(fs.readFileSync(process.argv[2], "utf8"), path.join(__dirname, "../.."));
for (const line of page.elements.get("overview").lines())
  console.log(line.replace(/ \{[^}]*\}/g, "").replace(/\[width:[^\]]*\]/g, ""));
