"""What is done to objects from their tree, from the actions of its database, and from the menu."""

from dialogs import answer, choose_entry, on_server, question, rename, select
from objects import captions, choose, node, tree
from profiles import click_button, focus_demo
from queries import editor
from windows import close_page

# One of each kind, and a table with one of each of its parts.
MAKE = (
    "DROP DATABASE IF EXISTS korvane_tour; CREATE DATABASE korvane_tour CHARACTER SET utf8mb4;"
    "USE korvane_tour;"
    "CREATE TABLE makers (id INT PRIMARY KEY);"
    "CREATE TABLE goods (id INT PRIMARY KEY, name VARCHAR(40), weight INT, maker INT,"
    " KEY by_name (name), KEY by_maker (maker),"
    " CONSTRAINT to_maker FOREIGN KEY (maker) REFERENCES makers (id));"
    "CREATE TRIGGER before_goods BEFORE INSERT ON goods FOR EACH ROW SET NEW.weight = 1;"
    "CREATE VIEW cheap AS SELECT id, name FROM goods WHERE id < 10;"
    "CREATE PROCEDURE tidy () BEGIN END;"
    "CREATE FUNCTION two () RETURNS INT DETERMINISTIC RETURN 2;"
    "CREATE EVENT nightly ON SCHEDULE EVERY 1 DAY DISABLE DO DO 0"
)

# How each is renamed: the title of the dialog, and where the server knows it by name.
OBJECTS = (
    ("cheap", "Rename view", "SELECT table_name FROM information_schema.views"
     " WHERE table_schema = 'korvane_tour'"),
    ("tidy", "Rename routine", "SELECT routine_name FROM information_schema.routines"
     " WHERE routine_schema = 'korvane_tour' AND routine_type = 'PROCEDURE'"),
    ("two", "Rename routine", "SELECT routine_name FROM information_schema.routines"
     " WHERE routine_schema = 'korvane_tour' AND routine_type = 'FUNCTION'"),
    ("nightly", "Rename event", "SELECT event_name FROM information_schema.events"
     " WHERE event_schema = 'korvane_tour'"),
    ("makers", "Rename table", "SELECT table_name FROM information_schema.tables"
     " WHERE table_schema = 'korvane_tour' AND table_name NOT IN ('goods', 'cheap', 'new_cheap')"),
)  # fmt: skip

# The parts of a table: folder, name, the words of the question, and what counts it on the server.
PARTS = (
    ("Fields", "weight", "field", "SELECT COUNT(*) FROM information_schema.columns"
     " WHERE table_schema = 'korvane_tour' AND column_name = 'weight'"),
    ("Indexes", "by_name", "index", "SELECT COUNT(DISTINCT index_name) FROM"
     " information_schema.statistics WHERE table_schema = 'korvane_tour'"
     " AND index_name = 'by_name'"),
    ("References", "to_maker", "foreign key", "SELECT COUNT(*) FROM"
     " information_schema.referential_constraints WHERE constraint_schema = 'korvane_tour'"),
    ("Triggers", "before_goods", "trigger", "SELECT COUNT(*) FROM information_schema.triggers"
     " WHERE trigger_schema = 'korvane_tour'"),
)  # fmt: skip


def make(t, statements=MAKE):
    """A fresh database of the tour, which is then chosen in the tree."""
    t.stage.sql(statements)
    choose(t, "shop")
    t.screen.click(t.screen.find(t.main(), "push button", "Refresh"))
    choose(t, "korvane_tour")


def menu_of(t, caption):
    """The menu of a node by the right mouse button; gives the captions of its entries."""
    t.screen.click(node(t, caption), button=3)
    return [each.name for each in t.screen.popup().children if each.name]


def gone(t, caption):
    t.screen.wait(
        lambda: caption not in [each.split(" (")[0] for each in captions(t)],
        f"{caption} stays in the tree",
    )


def renaming(t):
    """By the menu and by its key in turn."""
    make(t)
    for number, (name, title, query) in enumerate(OBJECTS):
        new_name = f"new_{name}"
        if number % 2:
            t.screen.click(node(t, name))
            t.screen.keys("F2")
        else:
            menu_of(t, name)
            choose_entry(t, "Rename")
        rename(t, title, new_name)
        node(t, new_name)
        gone(t, name)
        on_server(t, query, [new_name], f"{name} after it was renamed")
    t.shot("tree-renamed", tree(t))

    # What cannot be done is said, and the dialog keeps what was typed.
    t.screen.click(node(t, "goods"))
    t.screen.keys("F2")
    t.screen.window("Rename table")
    t.screen.keys("ctrl+a")
    t.screen.type("new_makers")
    t.screen.keys("Return")
    box = t.screen.window("Korvane", "dialog")
    t.shows(t.screen.find(box, "text", "Message"), "already exists")
    t.shot("rename-refused", box)
    click_button(t, box, "OK")
    dialog = t.screen.window("Rename table")
    t.equal(t.screen.find(dialog, "text", "New name:").text, "new_makers", "what was typed")
    t.screen.keys("Escape")
    t.screen.gone("Rename table")
    node(t, "goods")


def opening(t):
    """A table, a view and a routine by menu, key and double click."""
    menu_of(t, "goods")
    choose_entry(t, "Open")
    t.screen.find(t.main(), "page tab", "korvane_tour.goods")
    close_page(t)
    t.screen.click(node(t, "new_cheap"))
    t.screen.keys("Return")
    t.screen.find(t.main(), "page tab", "korvane_tour.new_cheap")
    t.shot("view-page", t.screen.find(t.main(), "page tab", "korvane_tour.new_cheap"))
    close_page(t)
    menu_of(t, "new_tidy")
    choose_entry(t, "Open")
    t.shows(editor(t), "DROP PROCEDURE")
    t.shows(editor(t), "CREATE PROCEDURE")
    close_page(t)


def parts(t):
    t.screen.click(node(t, "goods"))
    t.screen.keys("Right")
    for number, (folder, name, kind, query) in enumerate(PARTS):
        t.equal(menu_of(t, folder), [f"Create {folder[:-1] if folder != 'Indexes' else 'Index'}..."],
                f"the menu of {folder}")  # fmt: skip
        t.screen.keys("Escape")
        t.screen.click(node(t, folder))
        t.screen.keys("Right")
        node(t, name)
        if number % 2:
            t.equal(menu_of(t, name), ["Modify", "Delete"], f"the menu of {name}")
            if number == 1:
                t.shot("tree-parts", tree(t), rest=False)
            choose_entry(t, "Delete")
        else:
            t.screen.click(node(t, name))
            t.screen.keys("Delete")
        answer(t, f'Do you really want to delete {kind} "{name}"?', "No")
        t.equal(t.stage.sql(query), ["1"], f"{name} after No")
        t.screen.click(node(t, name))
        t.screen.keys("Delete")
        answer(t, f'Do you really want to delete {kind} "{name}"?')
        on_server(t, query, ["0"], f"{name} after Yes")
        gone(t, name)
        t.screen.click(node(t, folder))
        t.screen.keys("Left")


def deleting(t):
    for number, (name, title, query) in enumerate(OBJECTS):
        kind, name = title.split()[1], f"new_{name}"
        if number % 2:
            menu_of(t, name)
            choose_entry(t, "Delete")
        else:
            t.screen.click(node(t, name))
            t.screen.keys("Delete")
        answer(t, f'Do you really want to delete {kind} "{name}"?')
        on_server(t, query, [], f"{name} after it was deleted")
        gone(t, name)
    t.shot("tree-deleted", tree(t))


def new_routines(t):
    """From the folders, from the actions of the database, and from the menu, which asks where."""

    def check(kind, database=True):
        t.shows(editor(t), f"CREATE {kind}")
        t.shows(editor(t), "DELIMITER $$")
        if database:
            t.check(
                any(box.name == "korvane_tour" for box in t.main().all("combo box")[1:]),
                "the new query uses another database",
            )
        close_page(t)

    # By key: an action of two menus is told by its place in the first only.
    t.equal(menu_of(t, "Procedures"), ["Create Procedure..."], "the menu of Procedures")
    t.screen.keys("Down", "Return")
    check("PROCEDURE")
    t.screen.click(t.screen.find(t.main(), "push button", "Database actions"))
    choose_entry(t, "Create Function...")
    check("FUNCTION")
    t.choose("Schema", "Create Procedure...")
    t.shot("schema-choice", t.screen.window("Select Database"))
    select(t, "Select Database", "korvane_tour")
    check("PROCEDURE")
    t.choose("Schema", "Create Function...")
    select(t, "Select Database", "korvane_tour")
    check("FUNCTION")


def databases(t):
    """Opening, copying and deleting whole databases by the menu."""
    t.choose("Schema", "Open")
    select(t, "Select Database", "korvane_tour")
    t.screen.find(t.main(), "page tab", "korvane_tour")
    t.screen.find(t.main(), "page tab", "Tables: 1")
    close_page(t)

    t.choose("Schema", "Migrate...")
    select(t, "Select Database", "korvane_tour")
    migrate(t, "korvane_tour_new")
    t.equal(
        t.stage.sql("SELECT table_name FROM information_schema.tables"
                    " WHERE table_schema = 'korvane_tour_new'"),
        ["goods"], "the tables of the copy",
    )  # fmt: skip

    choose(t, "korvane_tour_new")  # known to the list without a refresh
    t.screen.click(t.screen.find(t.main(), "push button", "Database actions"))
    choose_entry(t, "Delete...")
    t.shot("delete-database", question(t, 'delete database "korvane_tour_new"?'))
    answer(t, 'delete database "korvane_tour_new"?')
    query = "SHOW DATABASES LIKE 'korvane\\_tour%'"
    on_server(t, query, ["korvane_tour"], "the databases after one was deleted")
    t.screen.wait(lambda: not t.main().find("tree", "Objects"), "its objects stay in the tree")

    t.choose("Schema", "Delete...")
    select(t, "Select Database", "korvane_tour")
    answer(t, 'delete database "korvane_tour"?', "No")
    t.equal(t.stage.sql(query), ["korvane_tour"], "the databases after No")
    t.choose("Schema", "Delete...")
    select(t, "Select Database", "korvane_tour")
    answer(t, 'delete database "korvane_tour"?')
    on_server(t, query, [], "the databases after the second was deleted")
    choose(t, "shop")


def migrate(t, name):
    """Copies the database of the dialog to another name on the same server."""
    dialog = t.screen.window("Migrate Database")
    start = t.screen.find(dialog, "push button", "Start")
    t.check(not start.enabled, "a migration without a target can be started")
    click_button(t, dialog, "select Target host")
    focus_demo(t)
    click_button(t, t.screen.window("Profiles"), "Select", lowest=True)
    t.screen.gone("Profiles")
    edit = t.screen.find(dialog, "text", "Target database")
    t.screen.click(edit)
    t.screen.keys("ctrl+a")
    t.screen.type(name)
    t.screen.wait(lambda: edit.text == name, "the target database does not take the name")
    t.shot("migrate-options", dialog)
    t.screen.click(start)
    title = 'Migration Database "korvane_tour" - Finished'
    job = t.screen.window(title)
    t.shows(t.screen.find(job, "text", "Log"), "Task completed (")
    t.shot("migrate", job)
    t.screen.keys("Escape")
    t.screen.gone(title)


SCENES = (
    ("Objects get other names", renaming),
    ("Objects are opened", opening),
    ("Parts of a table are deleted", parts),
    ("Objects are deleted", deleting),
    ("Routines are begun", new_routines),
    ("Whole databases", databases),
)
