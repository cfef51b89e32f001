#pragma once

// What is done with a page, and read from it, in the browser, see Browser::Run.
namespace PageScripts
{

// A line for each event, in the order of their numbers, its parts apart by tabs.
inline constexpr const char* EVENTS = R"(
const text = (part) => part ? part.textContent.trim() : "";
const texts = (parts) => [...parts].map(text).join(";");
report([...document.querySelectorAll("[data-event]")].sort((a, b) => a.dataset.event - b.dataset.event).map((entry) => [
    entry.dataset.event, texts(entry.querySelectorAll("button .badge")), text(entry.querySelector(".source")),
    texts(entry.querySelectorAll(".requests li")), texts(entry.querySelectorAll(".tracks li")),
    text(entry.querySelector(".risk")),
].join("\t")).join("\n"));
)";

// How many things were loaded besides the page.
inline constexpr const char* LOADED = R"(report(String(performance.getEntriesByType("resource").length));)";

// What the details panel tells of.
inline constexpr const char* SHOWN = R"(report(document.querySelector("#details .title")?.textContent ?? "nothing");)";

// The pointer goes over the second bar.
inline constexpr const char* POINT = R"(
document.querySelectorAll(".bars .bar")[1].dispatchEvent(new MouseEvent("mouseover", { bubbles: true }));
)";

// Whether each entry has a name and is reached by the tabulator key.
inline constexpr const char* REACHED = R"(
const all = [...document.querySelectorAll(".entry button")];
const bad = all.filter((button) => button.tabIndex !== 0 || !button.textContent.trim());
report(`${all.length} entries, ${bad.length} bad`);
)";

// Each pair of colours of text and what is behind it that is told apart too badly.
inline constexpr const char* CONTRASTS = R"(
const numbers = (colour) => colour.match(/[\d.]+/g).map(Number);
const light = (colour) => numbers(colour).slice(0, 3).map((part) => part / 255)
    .map((part) => part <= 0.04045 ? part / 12.92 : ((part + 0.055) / 1.055) ** 2.4)
    .reduce((sum, part, i) => sum + part * [0.2126, 0.7152, 0.0722][i], 0);
const behind = (part) => {
    const colour = getComputedStyle(part).backgroundColor;
    return numbers(colour)[3] === 0 && part.parentElement ? behind(part.parentElement) : colour;
};
document.querySelector("[data-event] button").focus();
const bad = new Set();
let pairs = 0;
for (const part of document.querySelectorAll("body *")) {
    if (!part.checkVisibility() || ![...part.childNodes].some((node) => node.nodeType === 3 && node.data.trim()))
        continue;
    const [text, back] = [getComputedStyle(part).color, behind(part)];
    const [low, high] = [light(text), light(back)].sort((a, b) => a - b);
    ++pairs;
    if ((high + 0.05) / (low + 0.05) < 4.5)
        bad.add(`${part.className}: ${text} on ${back}`);
}
report(`${pairs > 50 ? "many" : pairs} looked at, ${[...bad].join("; ") || "none bad"}`);
)";

// Whether entries of a column cover one another.
inline constexpr const char* OVERLAPS = R"(
let covered = 0;
let entries = 0;
for (const column of document.querySelectorAll(".column")) {
    const boxes = [...column.querySelectorAll(".entry")].map((entry) => entry.getBoundingClientRect());
    const heights = boxes.filter((box) => box.height > 0);
    entries += heights.length;
    heights.forEach((box, i) => covered += i > 0 && box.top < heights[i - 1].bottom - 0.5 ? 1 : 0);
}
report(`${entries} entries, ${covered} covered`);
)";

} // namespace PageScripts
