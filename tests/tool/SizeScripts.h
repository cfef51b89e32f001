#pragma once

// What is read of the sizes of a page's parts in the browser, see Browser::Run.
namespace SizeScripts
{

// What of a page is to be seen on paper.
inline constexpr const char* PRINTED = R"(
const seen = (selector) => [...document.querySelectorAll(selector)].filter((part) => part.checkVisibility()).length;
report(`${seen("[data-event]")} events, ${seen("nav, #details, #filter legend, #filter ul, .hours, .bars, .requests")} others`);
)";

// The ends of playbacks that are to be seen, in the order of the page.
inline constexpr const char* ENDS = R"(
report([...document.querySelectorAll(".until")].filter((part) => part.checkVisibility())
    .map((part) => part.textContent).join(" "));
)";

// How many notes below the weeks there are, and how many are to be seen.
inline constexpr const char* NOTES = R"(
const notes = [...document.querySelectorAll(".notes li")];
const shown = notes.filter((part) => part.checkVisibility({ contentVisibilityAuto: true }) &&
    part.getBoundingClientRect().height > 0);
report(`${notes.length} notes, ${shown.length} shown`);
)";

// What is to be seen of the sentences that explain bars and strips.
inline constexpr const char* KEY = R"(
report([...document.querySelectorAll(".key span")].filter((part) => part.checkVisibility())
    .map((part) => part.textContent).join(" "));
)";

// Every text that does not fit where it stands, or reaches out of the window.
inline constexpr const char* CUT = R"(
const parts = [...document.querySelectorAll(".entry > button, .entry > button *, h1, h2, h3, h3 *, .badge, header *")];
const shown = parts.filter((part) => part.checkVisibility() && !part.closest(".extent, .iconic"));
const cut = new Set();
for (const part of shown) {
    const box = part.getBoundingClientRect();
    const frame = part.closest(".entry")?.firstElementChild.getBoundingClientRect() ?? box;
    const isSqueezed = part.tagName !== "I" && getComputedStyle(part).display !== "inline" &&
        (part.scrollWidth > part.clientWidth + 1 && part.clientWidth > 0 || part.scrollHeight > part.clientHeight + 1 && part.clientHeight > 0);
    if (isSqueezed || box.right > innerWidth + 1 || box.bottom > frame.bottom + 1 || box.right > frame.right + 1)
        cut.add(part.closest("button, h1, h2, h3, header p")?.textContent.trim() ?? part.textContent.trim());
}
document.querySelector(".stream button")?.focus();
for (const part of document.querySelectorAll("#details, #details *")) {
    if (part.checkVisibility() && part.scrollWidth > part.clientWidth + 1 && part.clientWidth > 0)
        cut.add("details: " + part.textContent.trim());
}
const isWide = document.documentElement.scrollWidth > innerWidth;
report(`${shown.length > 100 ? "many" : shown.length} parts, cut: ${[...cut].join("; ") || "none"}${isWide ? ", too wide" : ""}`);
)";

// Whether what closes the details covers some of what is in the panel.
inline constexpr const char* CLOSING = R"(
document.querySelector("[data-event] button").focus();
const close = document.querySelector("#details .close").getBoundingClientRect();
const others = ["#details .content", "#details .force"].map((name) => document.querySelector(name)).filter(Boolean);
const covered = others.map((part) => part.getBoundingClientRect()).filter((box) => box.left < close.right &&
    box.right > close.left && box.top < close.bottom && box.bottom > close.top);
report(`${close.width > 0 ? "shown" : "hidden"}, ${covered.length} covered`);
)";

// How many rows the entries take, each number once, as they are drawn.
inline constexpr const char* ROWS_TAKEN = R"(
const lines = [...document.querySelectorAll(".hours i")].map((line) => line.getBoundingClientRect().top);
const row = lines[4] - lines[3];
const rows = [...document.querySelectorAll(".entry")].map((entry) => entry.getBoundingClientRect().height / row);
report([...new Set(rows.map((number) => number.toFixed(1)))].sort().join(" "));
)";

// The heights at which each text of an entry stands, where there are several: none in a page that keeps them.
inline constexpr const char* HEIGHTS = R"(
const tops = new Map();
for (const day of document.querySelectorAll(".day")) {
    let last = "";
    for (const entry of day.querySelectorAll(".entry")) {
        if (entry.dataset.s === last)
            continue;
        last = entry.dataset.s;
        const top = Math.round(entry.getBoundingClientRect().top - day.getBoundingClientRect().top);
        tops.set(last, (tops.get(last) ?? new Set()).add(top));
    }
}
const several = [...tops].filter(([, heights]) => heights.size > 1).map(([second]) => second);
report(`${tops.size} times, at several heights: ${several.join(" ") || "none"}`);
)";

} // namespace SizeScripts
