// Shows the details of the entry that the pointer or the focus is on, and moves the focus with the arrow keys.
(() => {
    const DAY_S = 86400;
    const panel = document.getElementById("details");
    const content = panel.querySelector(".content");
    let lit = [];

    // The entry that has the details of what target is part of; null for what is part of none.
    const entryOf = (target) => {
        const part = target instanceof Element ? target.closest("[data-event], [data-of]") : null;
        return part && document.getElementById("e" + (part.dataset.event ?? part.dataset.of));
    };

    const clear = () => {
        for (const part of lit)
            part.classList.remove("lit");
        lit = [];
        panel.classList.remove("open");
        content.replaceChildren();
    };

    const close = () => {
        clear();
        document.dispatchEvent(new Event("details-closed"));
    };

    // What the check has found about the line of an entry.
    const findingsOf = (entry) =>
        [...document.querySelectorAll(`#findings [data-line="${entry.dataset.line}"] .finding`)]
            .map((finding) => finding.cloneNode(true));

    const show = (entry) => {
        if (lit[0] === entry)
            return;
        clear();
        lit = [entry, ...document.querySelectorAll(`[data-of="${entry.dataset.event}"]`)];
        for (const part of lit)
            part.classList.add("lit");
        const more = entry.querySelector(".more").cloneNode(true);
        more.append(...findingsOf(entry));
        content.replaceChildren(more);
        content.scrollTop = 0;
        panel.classList.add("open");
    };

    // The entry of a column that is nearest to that second of the day.
    const nearest = (column, second) => {
        let best = null;
        for (const entry of column.querySelectorAll(".entry:not([hidden])")) {
            if (best && Math.abs(entry.dataset.s - second) >= Math.abs(best.dataset.s - second))
                continue;
            best = entry;
        }
        return best;
    };

    // The columns in the order of their dates, whatever their weeks.
    const columns = [...document.querySelectorAll(".day")];

    // The entry nearest to second in the next column that has one; step: 1 or -1.
    const beyond = (column, second, step) => {
        for (let i = columns.indexOf(column) + step; i >= 0 && i < columns.length; i += step) {
            const found = nearest(columns[i], second);
            if (found)
                return found;
        }
        return null;
    };

    const sideways = (entry, step) => beyond(entry.closest(".day"), entry.dataset.s, step);
    // The next or the previous one that is shown; property: of its element.
    const beside = (entry, property) => {
        let other = entry[property];
        while (other?.hidden)
            other = other[property];
        return other;
    };

    const down = (entry) => beside(entry, "nextElementSibling") ?? beyond(entry.closest(".day"), 0, 1);
    const up = (entry) => beside(entry, "previousElementSibling") ?? beyond(entry.closest(".day"), DAY_S, -1);
    const shownOf = (entry) => [...entry.parentElement.children].filter((other) => !other.hidden);

    const moves = {
        ArrowDown: down,
        ArrowUp: up,
        ArrowRight: (entry) => sideways(entry, 1),
        ArrowLeft: (entry) => sideways(entry, -1),
        Home: (entry) => shownOf(entry)[0],
        End: (entry) => shownOf(entry).at(-1),
    };

    document.addEventListener("keydown", (event) => {
        if (event.key === "Escape")
            close();
        const entry = event.target instanceof Element ? event.target.closest(".entry") : null;
        if (!entry || event.ctrlKey || event.altKey || event.metaKey || !Object.hasOwn(moves, event.key))
            return;
        event.preventDefault();
        moves[event.key](entry)?.querySelector("button").focus();
    });

    for (const name of ["focusin", "mouseover", "click"])
        document.addEventListener(name, (event) => {
            const entry = entryOf(event.target);
            if (entry)
                show(entry);
        });

    // A link to an entry leads to what can be moved on from.
    document.addEventListener("click", (event) => {
        const link = event.target instanceof Element ? event.target.closest('a[href^="#e"]') : null;
        const entry = link && document.getElementById(link.hash.slice(1));
        if (!entry)
            return;
        event.preventDefault();
        entry.querySelector("button").focus();
    });

    panel.querySelector(".close").addEventListener("click", close);
})();
