"""The tree of a database's objects."""

from profiles import click_button
from queries import editor


def tree(t):
    return t.screen.find(t.main(), "tree", "Objects")


def captions(t):
    objects = tree(t)
    return [objects.cell(row, 0).name for row in range(objects.row_count)]


def node(t, caption):
    """Waits for a node with this caption; of a folder without its count."""
    return t.screen.wait(
        lambda: next(
            (
                tree(t).cell(row, 0)
                for row, found in enumerate(captions(t))
                if found.split(" (")[0] == caption
            ),
            None,
        ),
        lambda: f"no node {caption} among {captions(t)}",
    )


def choose(t, name):
    box = t.main().all("combo box")[0]
    t.screen.click(box)
    items = t.screen.wait(
        lambda: [each for each in box.children if each.role == "list" and each.showing],
        "the list of databases does not open",
    )[0]
    names = [each.name for each in items.children]
    t.check(name in names, f"{name} is not among {names}")
    t.screen.keys("Home", *["Down"] * names.index(name), "Return")
    node(t, "Tables")


def browse(t):
    t.stage.sql(
        "DROP DATABASE IF EXISTS korvane_tour; CREATE DATABASE korvane_tour;"
        "CREATE TABLE korvane_tour.first (id INT PRIMARY KEY, name TEXT);"
        "CREATE VIEW korvane_tour.all_names AS SELECT name FROM korvane_tour.first;"
        "CREATE FUNCTION korvane_tour.two () RETURNS INT RETURN 2"
    )
    choose(t, "korvane_tour")
    t.screen.click(node(t, "first"))
    t.screen.keys("Right")
    for folder in ("Fields", "Indexes", "References", "Triggers"):
        node(t, folder)
    t.shot("objects", tree(t))

    t.screen.click(node(t, "first"), button=3)
    menu = t.screen.popup()
    t.check("Rename" in [each.name for each in menu.children], "the menu of a table")
    t.shot("objects-menu", menu, rest=False)
    t.screen.keys("Escape")
    t.screen.keys("F2")
    t.screen.window("Rename table")
    t.screen.type("second")
    t.shot("rename-table", t.screen.window("Rename table"))
    t.screen.keys("Return")
    t.screen.gone("Rename table")
    node(t, "second")
    t.equal(
        t.stage.sql("SHOW FULL TABLES FROM korvane_tour WHERE Table_type = 'BASE TABLE'"),
        ["second\tBASE TABLE"],
        "the tables on the server",
    )
    t.screen.double_click(node(t, "two"))
    t.shows(editor(t), "CREATE FUNCTION")
    t.screen.keys("ctrl+F4")

    t.screen.click(node(t, "all_names"))
    t.screen.keys("Delete")
    box = t.screen.wait(
        lambda: next((w for w in t.screen.windows() if w.find("push button", "Yes")), None),
        "nobody asks whether the view shall go",
    )
    t.shot("delete-view", box)
    click_button(t, box, "Yes")
    t.screen.wait(lambda: "all_names" not in captions(t), "the view stays in the tree")
    choose(t, "shop")
    t.shot("shop", tree(t))
