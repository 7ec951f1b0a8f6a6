"""Files of queries and the result as a text."""

import os

from profiles import buttons, click_button
from queries import editor, result, status, type_text, use, use_boxes

OPENED = "SELECT name, native_name, '€ 12,50 – ça va? 日本' AS text\nFROM countries;\n"


def file_dialog(t, title, path):
    """Answers a file dialog with a path."""
    dialog = t.screen.window(title)
    edit = t.screen.find(dialog, "text")
    t.screen.wait(lambda: edit.focused, "the file name has no focus")
    t.screen.keys("ctrl+a")
    t.screen.type(path)
    t.screen.wait(lambda: edit.text == path, f"the file name came out as {edit.text!r}")
    return dialog


def export_text(t):
    rows = result(t).row_count
    click_button(t, t.main(), "Export result")
    menu = t.screen.popup()
    found = [node.name for node in menu.children]
    t.equal(found, ["Export as CVS...", "Export as Text"], "the menu of exports")
    t.shot("export-menu", menu, rest=False)
    t.screen.click(menu.children[1])
    t.screen.find(t.main(), "page tab", "Result as text")
    page = t.screen.find(t.main(), "text", "Text editor")
    t.shows(page, f"Fetched {rows} row(s) for ")
    for word in ("sku", "CUP-001", "SELECT sku, price"):
        t.shows(page, word)
    t.shot("text-export", page)

    path = t.stage.path("result.txt")
    click_button(t, t.main(), "Save")
    dialog = file_dialog(t, "Save As", path)
    t.shot("save-dialog", dialog)
    t.screen.keys("Return")
    t.screen.gone("Save As")
    t.screen.wait(lambda: os.path.exists(path), "the text was not saved")
    with open(path, encoding="utf-8-sig") as file:
        t.check(f"Fetched {rows} row(s)" in file.read(), "the saved text is another one")
    t.screen.keys("ctrl+F4")
    t.screen.wait(
        lambda: not t.main().find("page tab", "Result as text"), "the page does not close"
    )


def save(t):
    path = t.stage.path("prices.sql")
    where = editor(t)
    t.choose("Query", "Save As...")
    file_dialog(t, "Save As", path)
    t.screen.keys("Return")
    t.screen.find(t.main(), "page tab", "prices.sql")
    status(t, f"File name: {path}")
    t.equal(read(path), where.text, "the saved file")
    t.check(not t.menu("Query", "Save").enabled, "an unchanged file can be saved again")
    t.shot("query-menu", t.main().find("menu item", "Save As..."))
    t.close_menu(2)

    t.screen.click(where)
    t.screen.keys("ctrl+a")
    type_text(t, where, "SELECT sku, price FROM products ORDER BY price DESC;")
    t.screen.keys("ctrl+s")
    t.screen.wait(lambda: read(path) == where.text, "the change was not saved")


def read(path):
    with open(path, encoding="utf-8-sig", newline="") as file:
        return file.read()


def open_and_duplicate(t):
    path = t.stage.path("countries.sql")
    with open(path, "w", encoding="utf-8") as file:
        file.write(OPENED)
    t.screen.keys("ctrl+o")
    file_dialog(t, "Open", path)
    t.screen.keys("Return")
    t.screen.find(t.main(), "page tab", "countries.sql")
    where = editor(t)
    t.equal(where.text, OPENED, "the opened file")
    t.check(not buttons(t.main(), "Save")[0].enabled, "an opened file counts as changed")

    use(t, "shop")
    t.choose("Query", "Duplicate")
    t.screen.wait(
        lambda: any(node.in_front for node in t.main().all("page tab", "Query")),
        "the duplicate is not in view",
    )
    t.equal(editor(t).text, OPENED, "the text of the duplicate")
    t.equal(use_boxes(t)[0].name, "shop", "the database of the duplicate")
    t.choose("Query", "Execute")
    rows = result(t)
    t.screen.wait(lambda: rows.row_count, "the duplicate gives no rows")
    t.equal(rows.cell(0, "text").name, "€ 12,50 – ça va? 日本", "the text from the file")
    t.shot("duplicate", rows)
