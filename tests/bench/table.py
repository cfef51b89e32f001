"""Figures as the tables of docs/performance.md."""
import re


def number(value):
    """With three digits that count."""
    if value is None:
        return "-"
    for limit, digits in ((0.0995, 3), (0.995, 2), (99.5, 1)):
        if abs(value) < limit:
            return f"{value:.{digits}f}"
    return f"{value:,.0f}"


def ratio(value, base):
    return f"{value / base:.2g}" if base and value / base < 99.5 else f"{value / base:,.0f}" if base else "-"


def formatted(rows):
    """The rows, the first of them the head, as a Markdown table: names to the left, figures to the right."""
    widths = [max(len(row[column]) for row in rows) for column in range(len(rows[0]))]
    is_text = [not any(re.match(r"[\d-]", row[column]) for row in rows[1:]) for column in range(len(widths))]
    is_text[0] = True

    def shown(row):
        return "| " + " | ".join(cell.ljust(width) if left else cell.rjust(width)
                                 for cell, width, left in zip(row, widths, is_text)) + " |"

    rule = "|" + "|".join("-" * (width + 2) if left else "-" * (width + 1) + ":"
                          for width, left in zip(widths, is_text)) + "|"
    return "\n".join([shown(rows[0]), rule, *map(shown, rows[1:])])


def put(path, name, text):
    """Puts the text between the two marks of that name in the document."""
    begin, end = f"<!-- {name} -->\n", f"<!-- end of {name} -->\n"
    document = path.read_text()
    head, rest = document.split(begin)
    path.write_text(head + begin + text + "\n" + end + rest.split(end)[1])
