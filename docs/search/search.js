// SPDX-License-Identifier: MIT
//
// The search of the manual: a box on every page, and what it finds in searchindex.js, which is loaded when the box is
// used for the first time. An entry of the index is [page, section, address, text].
"use strict";

const mostResults = 40;

function wordsOf(query) {
    return query.toLowerCase().split(/\s+/).filter((word) => word !== "");
}

/// How well a word fits: a title counts more than text, and the whole of it more than a part. 0 if it is not there.
function weight(word, [page, section, , text]) {
    const title = (section || page).toLowerCase().replace(/\(\)$/, "");
    const wanted = word.replace(/\(\)$/, "");
    if (title === wanted)
        return 1000;
    if (title.includes(wanted))
        return 100;
    const count = text.toLowerCase().split(wanted).length - 1;
    return Math.min(count, 20) + (page.toLowerCase().includes(wanted) ? 10 : 0);
}

/// The entries that contain every word of the query, the best first.
function find(index, query) {
    const words = wordsOf(query);
    if (words.length === 0)
        return [];
    const found = [];
    index.forEach((entry, place) => {
        let total = 0;
        for (const word of words) {
            const own = weight(word, entry);
            if (own === 0)
                return;
            total += own;
        }
        found.push({ entry, total, place });
    });
    found.sort((one, other) => other.total - one.total || one.place - other.place);
    return found.map((result) => result.entry);
}

/// The text around the first word of the query.
function excerpt(text, query) {
    const places = wordsOf(query).map((word) => text.toLowerCase().indexOf(word)).filter((place) => place >= 0);
    const start = places.length > 0 ? Math.max(0, Math.min(...places) - 60) : 0;
    const end = Math.min(text.length, start + 200);
    return (start > 0 ? "…" : "") + text.slice(start, end) + (end < text.length ? "…" : "");
}

function element(name, properties, ...children) {
    const made = Object.assign(document.createElement(name), properties);
    made.append(...children);
    return made;
}

function showResults(list, query) {
    const found = find(searchIndex, query);
    list.replaceChildren(...found.slice(0, mostResults).map(([page, section, address, text]) =>
        element("li", {},
            element("a", { href: address }, section === "" || section === page ? page : `${page}: ${section}`),
            element("p", {}, excerpt(text, query)))));
    if (found.length > mostResults)
        list.append(element("li", {}, `… and ${found.length - mostResults} more; add a word to find less`));
    else if (found.length === 0 && wordsOf(query).length > 0)
        list.append(element("li", {}, `Nothing contains '${query}'.`));
    list.hidden = wordsOf(query).length === 0;
}

function addSearchBox() {
    const box = element("input", { type: "search", id: "find", placeholder: "Search the manual" });
    box.setAttribute("aria-label", "Search the manual");
    const list = element("ol", { id: "found", hidden: true });
    let isLoading = false;
    const update = () => {
        if (typeof searchIndex !== "undefined") {
            showResults(list, box.value);
        } else if (!isLoading) {
            isLoading = true;
            document.head.append(element("script", { src: "searchindex.js", onload: update }));
        }
    };
    box.addEventListener("input", update);
    box.addEventListener("focus", update);
    document.addEventListener("keydown", (event) => {
        if (event.key === "Escape")
            list.hidden = true;
        else if (event.key === "Enter" && document.activeElement === box && list.querySelector("a"))
            list.querySelector("a").click();
    });
    document.getElementById("top").append(element("div", { id: "finder" }, box, list));
}

if (typeof document !== "undefined")
    addSearchBox();
else
    module.exports = { excerpt, find };
