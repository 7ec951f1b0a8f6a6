"""Long jobs: a dump of a database, the copy that is made of it, and the clone of a table."""

import os

from files import file_dialog
from objects import choose, node
from profiles import click_button

MAKE = (
    "CREATE OR REPLACE DATABASE korvane_tour CHARACTER SET utf8mb4;"
    "USE korvane_tour;"
    "CREATE TABLE goods (id INT AUTO_INCREMENT PRIMARY KEY, name VARCHAR(40), body TEXT,"
    " FULLTEXT KEY words (body));"
    "INSERT INTO goods (name, body) SELECT CONCAT('good ', seq), REPEAT('text ', 20)"
    " FROM seq_1_to_5000"
)


def database_action(t, caption):
    t.screen.click(t.screen.find(t.main(), "push button", "Database actions"))
    t.screen.click(t.screen.find(t.screen.popup(), "menu item", caption))


def dump(t):
    t.stage.sql(MAKE)
    choose(t, "shop")
    t.screen.click(t.screen.find(t.main(), "push button", "Refresh"))
    choose(t, "korvane_tour")
    database_action(t, "Create SQL Dump...")
    dialog = t.screen.window("Create SQL Dump")
    start = t.screen.find(dialog, "push button", "Start")
    t.check(not start.enabled, "a dump without a file can be started")
    path = t.stage.path("goods.sql")
    click_button(t, dialog, "Select Target file name")
    file_dialog(t, "Save As", path)
    t.screen.keys("Return")
    t.screen.wait(lambda: start.enabled, "the dump cannot be started")
    t.shot("dump-options", dialog)
    t.screen.click(start)
    title = 'Creation SQL Dump "goods.sql" - Finished'
    job = t.screen.window(title)
    log = t.screen.find(job, "text", "Log")
    t.shows(log, 'Left out: fulltext index "words" of table "goods"')
    t.shows(log, "Task completed (")
    t.shot("dump", job)
    t.screen.keys("Escape")
    t.screen.gone(title)
    t.check(os.path.getsize(path) > 500000, "the file is too small")


def execute(t):
    path = t.stage.path("goods.sql")
    t.choose("Tools", "Execute SQL Dump...")
    dialog = t.screen.window("Execute SQL Dump")
    click_button(t, dialog, "select File name")
    file_dialog(t, "Open", path)
    t.screen.keys("Return")
    t.screen.wait(lambda: t.screen.find(dialog, "push button", "Start").enabled, "no start")
    click_button(t, dialog, "Start")
    title = 'Execution SQL Dump "goods.sql" - Finished'
    job = t.screen.window(title)
    t.shows(t.screen.find(job, "text", "Log"), "ER_DB_CREATE_EXISTS")
    t.shot("execute-refused", job)
    t.screen.keys("Escape")
    t.screen.gone(title)


def clone(t):
    database_action(t, "Clone...")
    dialog = t.screen.window("Clone database")
    t.screen.keys("ctrl+a")
    t.screen.type("korvane_tour_new")
    t.shot("clone-database", dialog)
    t.screen.keys("Return")
    title = 'Migration Database "korvane_tour" - Finished'
    job = t.screen.window(title)
    t.shows(t.screen.find(job, "text", "Log"), "Task completed (")
    t.shot("clone", job)
    t.screen.keys("Escape")
    t.screen.gone(title)
    t.equal(t.stage.sql("SELECT COUNT(*) FROM korvane_tour_new.goods"), ["5000"], "the copy")
    t.stage.sql("DROP DATABASE korvane_tour_new")

    t.screen.double_click(node(t, "goods"))
    click_button(t, t.main(), "Clone")
    dialog = t.screen.window("Clone table")
    t.shot("clone-table", dialog)
    click_button(t, dialog, "Clone")
    box = t.screen.wait(
        lambda: next((w for w in t.screen.windows() if "fulltext" in " ".join(n.name for n in w.walk())), None),
        "nothing tells what the copy does not have",
    )
    t.shot("clone-left-out", box)
    t.screen.keys("Return")
    t.screen.wait(lambda: node(t, "goods_copy"), "the copy is not in the tree")
    t.screen.keys("ctrl+F4")
    choose(t, "shop")


SCENES = (
    ("A dump of a database", dump),
    ("A dump that the server refuses", execute),
    ("Copies of a database and a table", clone),
)
