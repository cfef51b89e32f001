#pragma once

// What a planner does with a page, and what it then tells, see Browser::Run.
namespace ToolScripts
{

// The findings, a line each: the severity, the line's number, the line, and whether a link leads to an event of it.
inline constexpr const char* FINDINGS = R"(
report([...document.querySelectorAll("#findings li")].map((item) => {
    const target = item.querySelector("a")?.hash.slice(1);
    const event = target ? document.getElementById(target).dataset.line : "none";
    return [item.querySelector(".badge").textContent, item.dataset.line, item.querySelector("code").textContent, event,
        item.querySelector(".note").textContent].join(" ");
}).join("\n"));
)";

// Every text of the findings.
inline constexpr const char* FINDINGS_TEXT = R"(report(document.getElementById("findings").textContent);)";

// The findings that the details panel tells, without their lines' numbers.
inline constexpr const char* SHOWN_FINDINGS = R"(
report([...document.querySelectorAll("#details .finding .note")].map((part) => part.textContent).join(" "));
)";

// What is in force, as the panel tells it.
inline constexpr const char* IN_FORCE = R"(
const list = document.querySelector("#details .force dl");
report(list ? document.querySelector("#details .force p").textContent.replace(/:[^:]*$/, "") + ": " +
    [...list.querySelectorAll("dd")].map((part) => part.textContent).join(", ") : "nothing");
)";

// A function that moves the pointer to an hour of the day of that number.
inline constexpr const char* POINT_AT = R"(
const pointAt = (number, hour) => {
    const column = document.querySelectorAll(".day")[number].querySelector(".column");
    column.scrollIntoView();
    const line = document.querySelectorAll(".hours i")[hour];
    const box = column.getBoundingClientRect();
    const top = line ? line.getBoundingClientRect().top : box.bottom;
    column.dispatchEvent(new MouseEvent("mousemove", { bubbles: true, clientX: box.left + 1,
        clientY: Math.ceil(top) + 1 }));
};
)";

// Focuses the event of that number.
inline constexpr const char* FOCUS = R"(document.querySelector("#e%1 button").focus();)";

// Ticks the box of a kind, or takes its tick away.
inline constexpr const char* TICK = R"(document.querySelector("#filter input[value=%1]").click();)";

// The kinds of the entries and bars that are shown, and what the page tells of their number.
inline constexpr const char* SHOWN_KINDS = R"(
const kinds = (selector) => [...new Set([...document.querySelectorAll(selector)].filter((part) => part.checkVisibility())
    .map((part) => part.dataset.kind))].sort().join(" ");
report(`${kinds(".entry")} | ${kinds(".bars .bar")} | ${document.querySelector("#filter output").textContent}`);
)";

// What of the filter is to be seen, with its text.
inline constexpr const char* SHOWN_FILTER = R"(
report([...document.querySelectorAll("#filter > *")].filter((part) => part.checkVisibility() && part.textContent)
    .map((part) => `${part.localName} ${part.textContent}`).join(", "));
)";

// Follows the link of the first finding.
inline constexpr const char* FOLLOW = R"(document.querySelector("#findings a").click();)";

} // namespace ToolScripts
