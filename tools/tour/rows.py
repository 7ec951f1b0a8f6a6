"""The rows of a table: pages, new and changed records, cells, and the dialogs of long values."""

import os

from dialogs import answer
from files import file_dialog
from objects import node
from profiles import buttons, click_button
from screen import png
from tables import control, refresh
from tables import rows as grid
from tree import make
from windows import close_page

# A flag of three stripes.
PICTURE = png(90, [colour * 90 for colour in (b"\xae\x1c\x28", b"\xff\xff\xff", b"\x21\x46\x8b")
                   for _ in range(20)])  # fmt: skip

NUMBERS = "WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 250)"

MAKE = (
    "DROP DATABASE IF EXISTS korvane_tour; CREATE DATABASE korvane_tour CHARACTER SET utf8mb4;"
    "USE korvane_tour;"
    "CREATE TABLE things (id INT AUTO_INCREMENT PRIMARY KEY, name VARCHAR(40),"
    " price DECIMAL(30,2), made DATETIME(6), kind ENUM('new','used','worn'),"
    " body TEXT, picture BLOB);"
    "INSERT INTO things (id, name, price, made, kind, body)"
    f" {NUMBERS} SELECT i, CONCAT('thing ', i), i, '2024-02-29 12:34:56.789012', 'new',"
    " CONCAT('text of ', i) FROM n"
)


def things(t, what, number):
    return t.stage.sql(f"SELECT {what} FROM korvane_tour.things WHERE id = {number}")


def ids(t, first, count):
    """Waits for a page that begins with this row and has so many."""
    t.screen.wait(
        lambda: grid(t).row_count == count and grid(t).cell(0, "id").name == str(first),
        lambda: f"wanted {count} rows from {first} on, found {grid(t).row_count}",
    )


def box(t, name):
    found = t.screen.find(t.main(), "text", name)
    t.screen.click(found)
    t.screen.keys("ctrl+a")
    return found


def paging(t):
    make(t, MAKE)
    t.screen.double_click(node(t, "things"))
    ids(t, 1, 100)
    page = t.screen.find(t.main(), "text", "Page:")
    for name, first, count in (
        ("Next Page", 101, 100), ("Next Page", 201, 50), ("Previous Page", 101, 100),
        ("First Page", 1, 100), ("Last Page", 201, 50),
    ):  # fmt: skip
        click_button(t, t.main(), name)
        ids(t, first, count)
    t.check(not buttons(t.main(), "Next Page")[0].enabled, "there is a page behind the last one")
    t.equal(page.text, "3", "the number of the last page")

    box(t, "Page:")
    t.screen.type("2")
    t.screen.keys("Return")
    ids(t, 101, 100)
    t.stage.sql("UPDATE korvane_tour.things SET name = 'seen' WHERE id = 101")
    box(t, "Page:")
    t.screen.type("two")
    t.screen.keys("Return")
    t.screen.wait(lambda: page.text == "2", "what is no number stays in the box")
    t.equal(grid(t).cell(0, "name").name, "thing 101", "the row after what is no number")

    rows_per_page(t, "60")
    ids(t, 61, 60)
    t.shot("rows-page", grid(t))
    click_button(t, t.main(), "First Page")
    ids(t, 1, 60)
    rows_per_page(t, "500")
    ids(t, 1, 250)
    rows_per_page(t, "100")
    ids(t, 1, 100)


def rows_per_page(t, count):
    """Types into the box; its editor has no name of its own."""
    found = next(each for each in t.main().all("combo box") if each.rect[0] > grid(t).rect[0])
    t.screen.click(found, at=(12, found.rect[3] // 2))
    t.screen.keys("ctrl+a")
    t.screen.type(count)
    t.screen.keys("Return")


def row(t, dialog, name):
    """Puts the focus into a row of the record's dialog."""
    edit = t.screen.find(dialog, "text", name)
    t.screen.click(edit)
    t.screen.wait(lambda: edit.focused, f"the row {name} did not get the focus")
    return edit


def new_record(t):
    click_button(t, t.main(), "New")
    dialog = t.screen.window("Create Record")
    t.screen.keys("Escape")
    t.screen.gone("Create Record")
    t.equal(t.stage.sql("SELECT COUNT(*) FROM korvane_tour.things"), ["250"], "after Escape")

    t.screen.click(grid(t).cell(0, "name"))
    t.screen.keys("Insert")
    dialog = t.screen.window("Create Record")
    row(t, dialog, "name")
    t.screen.type("brand new")
    row(t, dialog, "price")
    t.screen.type("123456789012345678901234567.89")
    row(t, dialog, "made")
    t.screen.keys("ctrl+a")
    t.screen.type("2024-02-29 23:59:59.000001")
    t.shot("record-new", dialog)
    click_button(t, dialog, "Append")
    t.screen.gone("Create Record")
    wanted = "brand new\t123456789012345678901234567.89\t2024-02-29 23:59:59.000001\tNULL\tNULL"
    t.equal(things(t, "name, price, made, kind, body", 251), [wanted], "the new record")
    click_button(t, t.main(), "Last Page")
    ids(t, 201, 51)
    t.equal(
        grid(t).row(50)[:3], ["251", "brand new", "123456789012345678901234567.89"], "the new row"
    )
    t.shot("record-appended", grid(t))
    click_button(t, t.main(), "First Page")
    ids(t, 1, 100)


def update(t):
    """By Return on a row, then by a double click, and what the server refuses."""
    before = things(t, "id, kind, made, body", 1)
    t.screen.click(grid(t).cell(0, "name"))
    t.screen.keys("Return")
    dialog = t.screen.window("Update Record")
    row(t, dialog, "name")
    t.screen.keys("ctrl+a")
    t.screen.type("another name")
    row(t, dialog, "price")
    t.screen.keys("ctrl+0")
    t.shot("record-null", dialog)
    click_button(t, dialog, "Update")
    t.screen.gone("Update Record")
    t.equal(things(t, "name, price", 1), ["another name\tNULL"], "the changed record")
    t.equal(things(t, "id, kind, made, body", 1), before, "what was not touched")
    t.screen.wait(lambda: grid(t).cell(0, "name").name == "another name", "the grid is as before")

    t.screen.double_click(grid(t).cell(1, "name"))
    dialog = t.screen.window("Update Record")
    row(t, dialog, "made")
    t.screen.keys("ctrl+a")
    t.screen.type("2024-02-31 00:00:00")
    click_button(t, dialog, "Update")
    refusal = t.screen.window("Korvane", "dialog")
    t.shows(t.screen.find(refusal, "text", "Message"), "2024-02-31")
    t.shot("record-refused", refusal)
    click_button(t, refusal, "OK")
    t.equal(
        t.screen.find(dialog, "text", "made").text, "2024-02-31 00:00:00", "what was typed"
    )
    t.screen.keys("Escape")
    if "Update Record" in t.screen.titles():  # the first takes back what was typed
        t.screen.keys("Escape")
    t.screen.gone("Update Record")


def long_values(t):
    """The dialogs of texts and of bytes, from a record."""
    path, copy = t.stage.path("flag.png"), t.stage.path("copy.png")
    with open(path, "wb") as file:
        file.write(PICTURE)
    t.screen.click(grid(t).cell(2, "name"))
    t.screen.keys("Return")
    dialog = t.screen.window("Update Record")
    click_button(t, dialog, "edit body")
    text = t.screen.window("body")
    where = t.screen.find(text, "text", "Text editor")
    t.shows(where, "text of 3")
    t.screen.click(where)
    t.screen.keys("ctrl+End", "Return")
    t.screen.type("a second line")
    t.shot("text-dialog", text)
    click_button(t, text, "OK")
    t.screen.gone("body")

    click_button(t, dialog, "edit picture")
    blob = t.screen.window("picture")
    t.screen.find(blob, "label", "NULL")
    click_button(t, blob, "Import")
    file_dialog(t, "Open", path)
    t.screen.keys("Return")
    t.screen.gone("Open")
    t.screen.wait(lambda: not blob.find("label", "NULL"), "the picture is not shown")
    t.shot("blob-dialog", blob)
    click_button(t, blob, "OK")
    t.screen.gone("picture")
    t.shows(t.screen.find(dialog, "text", "picture"), "BLOB: ")
    t.shot("record-long-values", dialog)
    click_button(t, dialog, "Update")
    t.screen.gone("Update Record")
    t.equal(
        things(t, "REPLACE(REPLACE(body, CHAR(13), ''), CHAR(10), '/'), HEX(picture)", 3),
        [f"text of 3/a second line\t{PICTURE.hex().upper()}"],
        "the long values",
    )

    t.screen.click(grid(t).cell(2, "name"))
    click_button(t, t.main(), "Edit...")
    dialog = t.screen.window("Update Record")
    click_button(t, dialog, "edit picture")
    blob = t.screen.window("picture")
    click_button(t, blob, "Export")
    file_dialog(t, "Save As", copy)
    t.screen.keys("Return")
    t.screen.wait(lambda: os.path.exists(copy), "the picture was not exported")
    with open(copy, "rb") as file:
        t.check(file.read() == PICTURE, "another picture was exported")
    click_button(t, blob, "Clear")
    t.screen.find(blob, "label", "NULL")
    click_button(t, blob, "OK")
    click_button(t, dialog, "Update")
    t.screen.gone("Update Record")
    t.equal(things(t, "picture IS NULL", 3), ["1"], "the picture that was cleared")


def text_values(t):
    t.check(grid(t).cell(3, "body").name.endswith("B"), "a text shows without being asked for")
    t.screen.click(control(t, "check box", "'TEXT' values"))
    t.screen.wait(lambda: grid(t).cell(3, "body").name == "text of 4", "the texts do not show")
    t.shot("text-values", grid(t))
    t.screen.click(control(t, "check box", "'TEXT' values"))
    t.screen.wait(lambda: grid(t).cell(3, "body").name.endswith("B"), "the texts stay")


def edit_mode(t):
    """Cells: typed, refused, taken back, emptied, chosen from the list of their type."""
    t.screen.click(control(t, "check box", "Edit mode"))
    t.screen.double_click(grid(t).cell(4, "name"))
    t.screen.keys("ctrl+a")
    t.screen.type("in its cell")
    t.screen.keys("Return")
    t.screen.wait(lambda: things(t, "name", 5) == ["in its cell"], "the cell is not written")
    t.screen.click(grid(t).cell(4, "name"))
    t.screen.keys("ctrl+0")
    t.screen.wait(lambda: things(t, "name IS NULL", 5) == ["1"], "the cell is not NULL")
    t.screen.double_click(grid(t).cell(5, "price"))
    t.screen.keys("ctrl+a")
    t.screen.type("dear")
    t.screen.keys("Return")
    t.shot("cell-edit-refused", grid(t))
    t.equal(things(t, "price", 6), ["6.00"], "the price after a refusal")
    t.screen.keys("Escape")
    t.screen.wait(lambda: grid(t).cell(5, "price").name == "6.00", "a refused value stays")
    t.screen.double_click(grid(t).cell(6, "kind"))
    t.screen.keys("ctrl+a")
    t.screen.type("worn")
    t.screen.keys("Return")
    t.screen.wait(lambda: things(t, "kind", 7) == ["worn"], "the member is not written")
    t.shot("cell-edit-mode", grid(t))
    t.screen.click(control(t, "check box", "Edit mode"))


def others(t):
    """What another session did meanwhile is said, and the page goes on."""
    t.stage.sql("DELETE FROM korvane_tour.things WHERE id = 8")
    t.screen.click(grid(t).cell(7, "name"))
    t.screen.keys("Return")
    message = t.screen.window("Korvane", "dialog")
    t.shows(
        t.screen.find(message, "text", "Message"),
        "The record is not found: it was changed or deleted meanwhile.",
    )
    t.shot("record-gone", message)
    click_button(t, message, "OK")
    refresh(t)
    t.screen.wait(lambda: grid(t).cell(7, "id").name == "9", "the row stays in the grid")
    t.screen.click(grid(t).cell(7, "name"))
    t.screen.keys("Delete")
    answer(t, "Do you really want to delete this record?")
    t.screen.wait(lambda: things(t, "id", 9) == [], "the row stays on the server")

    t.stage.sql("DROP TABLE korvane_tour.things")
    click_button(t, t.main(), "Next Page")
    error = t.screen.find(t.main(), "text", "Error")
    t.shows(error, "ER_NO_SUCH_TABLE")
    t.shot("table-gone", error)
    close_page(t)


SCENES = (
    ("Pages of rows", paging),
    ("A new record", new_record),
    ("A record is changed", update),
    ("Long texts and pictures", long_values),
    ("Texts among the rows", text_values),
    ("Cells are changed", edit_mode),
    ("What others did", others),
)
