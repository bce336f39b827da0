// SPDX-License-Identifier: MIT
//
// check_search.js FOLDER PAGE...: the search of the manual in the folder finds words of pages and headers, and every
// heading of the pages, which are Markdown files.
"use strict";

const fs = require("fs");
const path = require("path");
const vm = require("vm");

const [folder, ...pages] = process.argv.slice(2);
const { excerpt, find } = require(path.resolve(folder, "search.js"));
const context = {};
vm.runInNewContext(fs.readFileSync(path.join(folder, "searchindex.js"), "utf8"), context);
const index = context.searchIndex;
const wrong = [];

function check(holds, message) {
    if (!holds)
        wrong.push(message);
}

// A query, and the file that one of the first five results is in.
const queries = [
    ["Length error occurred", "page-messages.html"], // in a table
    ["length ERROR", "page-messages.html"],
    ["big-endian two's complement", "page-formats.html"],
    ["exact numbers, null and empty texts", "page-json.html"],
    ["Component[2]", "page-paths.html"],
    ["dlclose", "page-threads-and-copies.html"],
    ["Documents from strangers", "page-reading.html"],
    ["find_package", "page-getting-started.html"],
    ["saveInBackground", "page-cookbook.html"], // in an example
    ["GetProblems", "classJobXml_1_1DataObject.html"],
    ["GetProblems()", "classJobXml_1_1DataObject.html"],
    ["SetMaxFFPDelay", "classJobXml_1_1TunerProperties.html"],
    ["InstallPending", "classTranslationCenter.html"],
    ["SaveFile", "namespaceREPORTGENERATOR.html"],
];
for (const [query, file] of queries) {
    const first = find(index, query).slice(0, 5);
    check(first.some(([, , address]) => address.split("#")[0] === file),
        `'${query}' finds ${first.map(([, , address]) => address).join(", ") || "nothing"}, not ${file}`);
}
check(find(index, "no such word in the manual, xyzzy").length === 0, "words that are nowhere are found");
check(find(index, " ").length === 0, "a blank query finds something");
check(find(index, "GetProblems")[0][1] === "GetProblems()", "a function is not the first result for its name");
check(excerpt("a".repeat(100) + " needle " + "b".repeat(300), "needle").includes("needle"), "an excerpt lacks the word");
check(!index.some((entry) => /ActionOn|testText/.test(entry.join(" "))), "inner names are listed");

let headings = 0;
for (const page of pages) {
    const stem = path.basename(page, ".md");
    const file = stem === "index" ? "index.html" : `page-${stem}.html`;
    const sections = index.filter(([, , address]) => address.split("#")[0] === file);
    check(sections.length > 0, `${page} is not in the manual`);
    const text = fs.readFileSync(page, "utf8").replace(/^```[^]*?^```$/gm, "");
    for (const [, heading] of text.matchAll(/^##+ (.*)$/gm)) {
        const title = heading.replace(/`/g, "").replace(/\[([^\]]*)\]\([^)]*\)/g, "$1").trim();
        check(sections.some(([, section]) => section === title), `${page}: the search does not know '${title}'`);
        ++headings;
    }
}
check(headings > 60, `only ${headings} headings were looked for`);
for (const name of fs.readdirSync(folder).filter((file) => file.endsWith(".html")))
    check(fs.readFileSync(path.join(folder, name), "utf8").includes('src="search.js"'), `${name} has no search box`);

console.log(wrong.join("\n") || `The search knows ${index.length} sections, and finds what the pages say.`);
process.exit(wrong.length > 0 ? 1 : 0);
