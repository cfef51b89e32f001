// Shows and hides the entries of a kind, with their bars.
(() => {
    const filter = document.getElementById("filter");
    if (!filter)
        return;
    const output = filter.querySelector("output");
    const boxes = [...filter.querySelectorAll("input")];

    const apply = (box) => {
        for (const part of document.querySelectorAll(`main [data-kind="${box.value}"]`))
            part.hidden = !box.checked;
        const all = document.querySelectorAll("[data-event]").length;
        const shown = document.querySelectorAll("[data-event]:not([hidden])").length;
        output.textContent = shown === all ? "" : `${shown} of ${all} events are shown`;
    };

    filter.addEventListener("change", (event) => apply(event.target));

    // A browser may keep what was ticked when the page is loaded again.
    for (const box of boxes.filter((one) => !one.checked))
        apply(box);

    // A link to an entry shows it. This comes before the link is followed.
    document.addEventListener("click", (event) => {
        const link = event.target instanceof Element ? event.target.closest('a[href^="#e"]') : null;
        const kind = link && document.getElementById(link.hash.slice(1))?.dataset.kind;
        const box = boxes.find((one) => one.value === kind);
        if (!box || box.checked)
            return;
        box.checked = true;
        apply(box);
    }, true);
})();
