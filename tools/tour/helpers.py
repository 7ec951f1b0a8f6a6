"""What helps who writes a statement: completion, and the result as delimited text."""

from profiles import click_button
from queries import editor, new_page, result


def lists(t):
    """The lists of candidates that are on the screen."""
    return [
        node
        for window in t.screen.windows()
        for node in window.all("list")
        if node.showing and node.name == "Completion"
    ]


def completion(t):
    where = new_page(t)
    t.screen.type("SELECT * FROM shop.")
    t.screen.wait(lambda: lists(t), "nothing opens behind the point")
    found = [item.name for item in lists(t)[0].children]
    t.check("customers" in found and "orders" in found, f"the tables are not offered: {found}")
    t.screen.type("cust")
    t.screen.wait(
        lambda: lists(t) and [item.name for item in lists(t)[0].children][0] == "customers",
        "the list does not follow what is typed",
    )
    t.shot("completion", lists(t)[0], rest=False)
    t.screen.keys("Return")
    t.shows(where, "SELECT * FROM shop.customers")
    t.screen.type(" WHERE id < 5 OR")
    t.screen.keys("ctrl+space")
    t.screen.wait(lambda: lists(t), "Ctrl+Space opens nothing")
    t.screen.keys("Escape")
    t.screen.wait(lambda: not lists(t), "the list stays")
    t.screen.keys("BackSpace", "BackSpace", "BackSpace", "ctrl+r")
    t.screen.wait(lambda: result(t).row_count == 4, "the statement does not run")


def export_delimited(t):
    click_button(t, t.main(), "Export result")
    t.screen.click(t.screen.popup().children[0])
    dialog = t.screen.window("Export options")
    t.screen.click(t.screen.find(dialog, "check box", "Include column titles"))
    t.screen.click(t.screen.find(dialog, "check box", "Custom regional settings"))
    t.shot("export-options", dialog)
    t.screen.click(t.screen.find(dialog, "check box", "Custom regional settings"))
    click_button(t, dialog, "OK")
    t.screen.find(t.main(), "page tab", "Result as CSV")
    page = t.screen.find(t.main(), "text", "Text editor")
    t.shows(page, "id\t")
    t.shot("delimited-export", page)
    t.screen.keys("ctrl+F4", "ctrl+F4")
    box = next((w for w in t.screen.windows() if w.find("push button", "No")), None)
    if box:
        click_button(t, box, "No")


SCENES = (
    ("Words and names as they are typed", completion),
    ("The result as delimited text", export_delimited),
)
