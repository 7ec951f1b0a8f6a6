"""The pages of a table and of a database."""

from objects import choose, node
from profiles import buttons, click_button
from queries import result

MAKE = (
    "DROP DATABASE IF EXISTS korvane_tour; CREATE DATABASE korvane_tour CHARACTER SET utf8mb4;"
    "CREATE TABLE korvane_tour.goods (id INT AUTO_INCREMENT PRIMARY KEY, name VARCHAR(40) NOT NULL,"
    " price DECIMAL(30,2), made DATE, kind ENUM('new','used') DEFAULT 'new', picture BLOB,"
    " KEY by_name (name)) COMMENT 'what is sold';"
    "USE korvane_tour; INSERT INTO goods (name, price, made)"
    " WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 250)"
    " SELECT CONCAT('good ', i), i / 4, '2024-02-29' FROM n;"
    "CREATE VIEW korvane_tour.cheap AS SELECT id, name FROM korvane_tour.goods WHERE price < 1"
)


def tab(t, caption):
    """The sheet of a page; counts stand behind the captions of some."""
    found = t.screen.wait(
        lambda: next(
            (
                each
                for each in t.main().all("page tab")
                if each.showing and each.name.split(":")[0] == caption
            ),
            None,
        ),
        f"no tab {caption}",
    )
    t.screen.click(found)
    return found


def control(t, role, name):
    return t.screen.find(t.main(), role, name)


def rows(t):
    return control(t, "table", "Data")


def refresh(t):
    """Presses the button of what is in view; that of the tree stands further to the left."""
    found = sorted(buttons(t.main(), "Refresh"), key=lambda node: node.rect[0])
    t.screen.click(found[-1])


def data(t):
    t.stage.sql(MAKE)
    choose(t, "shop")
    t.screen.click(control(t, "push button", "Refresh"))
    choose(t, "korvane_tour")
    t.screen.double_click(node(t, "goods"))
    t.screen.wait(lambda: rows(t).row_count == 100, "not the first hundred rows")
    t.shot("table-data", rows(t))

    t.screen.click(control(t, "push button", "Last Page"))
    t.screen.wait(lambda: rows(t).row_count == 50, "not the rest of the rows")
    t.screen.click(rows(t).header("id"))
    t.screen.wait(lambda: rows(t).column("id")[0] == "201", "not in ascending order")
    t.screen.click(rows(t).header("id"))
    t.screen.wait(lambda: rows(t).column("id")[0] == "50", "not in descending order")
    t.screen.click(control(t, "push button", "First Page"))
    t.screen.wait(lambda: rows(t).column("id")[0] == "250", "not the first page")

    t.screen.click(control(t, "check box", "Filter"))
    t.screen.type("name LIKE '%7' AND price > 50")
    t.screen.keys("ctrl+Return")
    wanted = t.stage.sql(
        "SELECT id FROM korvane_tour.goods WHERE name LIKE '%7' AND price > 50 ORDER BY id DESC"
    )
    t.screen.wait(lambda: rows(t).column("id") == wanted, "not the rows of the filter")
    t.shot("table-filter", rows(t))
    t.screen.keys("ctrl+a")
    t.screen.type("no_such_column = 1")
    t.screen.keys("ctrl+Return")
    error = t.screen.wait(
        lambda: next(
            (n for n in t.main().walk() if n.showing and "no_such_column' in" in n.text), None
        ),
        "nothing tells what is wrong with the filter",
    )
    t.shot("table-filter-error", error)
    t.screen.keys("ctrl+a", "Delete", "ctrl+Return")
    t.screen.wait(lambda: rows(t).row_count == 100, "the rows do not come back")
    t.screen.click(control(t, "check box", "Filter"))


def records(t):
    t.screen.click(rows(t).cell(0, "name"))
    t.screen.click(control(t, "push button", "Edit..."))
    dialog = t.screen.wait(
        lambda: next((w for w in t.screen.windows() if w.find("push button", "Update")), None)
        or next(
            (
                w
                for w in t.screen.windows()
                if w.find("push button", "Cancel") and w.name != "Korvane"
            ),
            None,
        ),
        "the record does not open",
    )
    t.shot("record", dialog)
    t.screen.keys("Escape")

    t.screen.click(rows(t).cell(1, "name"))
    t.screen.keys("Delete")
    box = t.screen.wait(
        lambda: next((w for w in t.screen.windows() if w.find("push button", "Yes")), None),
        "nobody asks whether the row shall go",
    )
    click_button(t, box, "Yes")
    t.screen.wait(
        lambda: t.stage.sql("SELECT COUNT(*) FROM korvane_tour.goods WHERE id = 249") == ["0"],
        "the row stays on the server",
    )


def structure(t):
    for caption, name in (
        ("Fields", "table-fields"),
        ("Indexes", None),
        ("References", None),
        ("Triggers", None),
        ("Info", "table-info"),
        ("DDL", "table-ddl"),
    ):
        sheet = tab(t, caption)
        if name:
            t.shot(name, sheet)


def schema(t):
    t.screen.click(control(t, "push button", "Database actions"))
    menu = t.screen.popup()
    t.screen.click(t.screen.find(menu, "menu item", "Open"))
    t.screen.wait(
        lambda: any(n.name == "Tables: 1" and n.showing for n in t.main().all("page tab")),
        "the page of the database does not open",
    )
    t.shot("schema", control(t, "page tab", "Tables: 1"))
    for caption in ("Views", "Procedures", "Functions", "Events", "Info"):
        tab(t, caption)
    t.shot("schema-info", control(t, "page tab", "Info"))

    t.screen.click(control(t, "push button", "Database actions"))
    t.screen.click(t.screen.find(t.screen.popup(), "menu item", "Checksum Data (CRC32)..."))
    title = 'Calculation Database Checksum "korvane_tour" - Finished'
    job = t.screen.window(title)
    log = t.screen.find(job, "text", "Log")
    t.shows(log, "Database checksum = ")
    t.shot("checksum", job)
    t.screen.keys("Escape")
    t.screen.gone(title)
    t.screen.keys("ctrl+F4", "ctrl+F4")
    choose(t, "shop")


SCENES = (
    ("The rows of a table", data),
    ("One record at a time", records),
    ("How a table is made", structure),
    ("The page of a database", schema),
)
