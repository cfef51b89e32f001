// Tells what is in force at the moment that the pointer or the focus is on.
(() => {
    const MINUTE_S = 60;
    const LAST_S = 86400 - MINUTE_S;
    const names = ["Volume", "Light", "Radio", "Playing"];
    const unset = ["not set yet", "not set yet", "off", "nothing"];
    const states = JSON.parse(document.getElementById("states").textContent);
    const panel = document.querySelector("#details .force");
    const hint = panel.cloneNode(true);
    const lists = new Map();

    // "a,b c,d" as pairs of numbers, each text read once.
    const pairs = (text, separator) => {
        if (!lists.has(text))
            lists.set(text, text.split(" ").map((pair) => pair.split(separator).map(Number)));
        return lists.get(text);
    };

    // The texts that hold at that second of the day. Where an hour comes twice, those of the later one.
    const stateAt = (day, second) =>
        states[pairs(day.dataset.force, ":").findLast(([from]) => from <= second)[1]];

    // The second of the day that lies rows below the day's beginning.
    const secondAt = (week, rows) => {
        const knots = pairs(week.dataset[getComputedStyle(week).getPropertyValue("--scale").trim()], ",");
        const found = knots.findIndex(([, top]) => top > rows);
        const next = found < 0 ? knots.length - 1 : Math.max(1, found);
        const [[from, above], [until, below]] = [knots[next - 1], knots[next]];
        const part = below > above ? (rows - above) / (below - above) : 0;
        return from + Math.min(1, Math.max(0, part)) * (until - from);
    };

    const twoDigits = (number) => String(Math.floor(number)).padStart(2, "0");
    const timeText = (second) => {
        const text = `${twoDigits(second / 3600)}:${twoDigits(second / MINUTE_S % MINUTE_S)}`;
        return second % MINUTE_S === 0 ? text : `${text}:${twoDigits(second % MINUTE_S)}`;
    };

    const element = (name, className, ...content) => {
        const made = document.createElement(name);
        made.className = className;
        made.append(...content);
        return made;
    };

    const show = (day, second, isSpoken) => {
        const items = stateAt(day, second).map((text, i) =>
            element("div", "", element("dt", "", names[i]),
                element("dd", text ? "" : "unset", text || unset[i])));
        const date = day.querySelector("h3").firstChild.textContent.trim();
        panel.ariaLive = isSpoken ? "polite" : "off";
        panel.replaceChildren(element("p", "", `In force on ${date} at ${timeText(second)}`),
            element("dl", "", ...items));
    };

    // Columns have a scale of time; lists have none.
    const isScaled = (day) => getComputedStyle(day.parentElement).display === "grid";

    const follow = (event) => {
        const target = event.target instanceof Element ? event.target : null;
        const day = target?.closest(".day");
        const entry = target?.closest(".entry");
        if (!day)
            return;
        if (entry) {
            show(day, Number(entry.dataset.s), event.type === "focusin");
            return;
        }
        if (event.type === "focusin" || !isScaled(day))
            return;
        const week = day.closest(".week");
        const box = day.querySelector(".column").getBoundingClientRect();
        if (event.clientY < box.top)
            return;
        const rows = (event.clientY - box.top) / box.height * getComputedStyle(week).getPropertyValue("--all");
        show(day, Math.min(LAST_S, Math.floor(secondAt(week, rows) / MINUTE_S) * MINUTE_S), false);
    };

    for (const name of ["focusin", "mousemove", "click"])
        document.addEventListener(name, follow);
    document.addEventListener("details-closed", () => panel.replaceChildren(...hint.cloneNode(true).childNodes));
})();
