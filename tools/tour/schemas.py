"""The lists of a database's page and of a table's page, and what is done to their lines."""

from dialogs import answer, choose_entry, on_server, rename
from objects import choose
from profiles import click_button
from queries import editor
from tables import refresh, tab
from tree import PARTS, make
from windows import close_page

# Of each list of a database: what stands in it, how it is renamed, and what counts it.
LISTS = (
    ("Views", "cheap", "Rename view", "view",
     "SELECT table_name FROM information_schema.views WHERE table_schema = 'korvane_tour'"),
    ("Procedures", "tidy", "Rename routine", "routine",
     "SELECT routine_name FROM information_schema.routines"
     " WHERE routine_schema = 'korvane_tour' AND routine_type = 'PROCEDURE'"),
    ("Functions", "two", "Rename routine", "routine",
     "SELECT routine_name FROM information_schema.routines"
     " WHERE routine_schema = 'korvane_tour' AND routine_type = 'FUNCTION'"),
    ("Events", "nightly", "Rename event", "event",
     "SELECT event_name FROM information_schema.events WHERE event_schema = 'korvane_tour'"),
    ("Tables", "makers", "Rename table", "table",
     "SELECT table_name FROM information_schema.tables"
     " WHERE table_schema = 'korvane_tour' AND table_type = 'BASE TABLE'"
     " AND table_name <> 'goods'"),
)  # fmt: skip


def turn(t, caption):
    """Turns to a sheet of the page in view; gives its list."""
    tab(t, caption)
    return t.screen.find(t.main(), "tree", caption)


def cell(t, lines, name):
    """The line of a list that has this name."""
    return t.screen.wait(
        lambda: next(
            (
                lines.cell(row, "Name")
                for row, found in enumerate(lines.column("Name"))
                if found == name
            ),
            None,
        ),
        lambda: f"no {name} among {lines.column('Name')}",
    )


def gone(t, lines, name):
    t.screen.wait(lambda: name not in lines.column("Name"), f"{name} stays in its list")


def sheet(t, caption):
    """Waits until a sheet has this caption, its count with it."""
    t.screen.wait(
        lambda: any(each.name == caption for each in t.main().all("page tab")),
        lambda: f"no {caption} among {[each.name for each in t.main().all('page tab')]}",
    )


def lists(t):
    make(t)
    t.screen.click(t.screen.find(t.main(), "push button", "Database actions"))
    choose_entry(t, "Open")
    sheet(t, "Tables: 2")
    for caption, name, title, kind, query in LISTS:
        lines = turn(t, caption)
        t.screen.click(cell(t, lines, name), button=3)
        if caption == "Views":
            t.shot("schema-list-menu", t.screen.popup(), rest=False)
        choose_entry(t, "Rename...")
        rename(t, title, f"new_{name}")
        cell(t, lines, f"new_{name}")
        on_server(t, query, [f"new_{name}"], f"{name} after it was renamed")
    t.shot("schema-renamed", lines)


def opened(t):
    """From the lists: by double click, by key and by menu."""
    lines = turn(t, "Tables")
    t.screen.double_click(cell(t, lines, "goods"))
    t.screen.find(t.main(), "page tab", "korvane_tour.goods")
    close_page(t)
    lines = turn(t, "Views")
    t.screen.click(cell(t, lines, "new_cheap"))
    t.screen.keys("Return")
    t.screen.find(t.main(), "page tab", "korvane_tour.new_cheap")
    close_page(t)
    for caption, name, word in (
        ("Procedures", "new_tidy", "PROCEDURE"), ("Functions", "new_two", "FUNCTION"),
    ):  # fmt: skip
        t.screen.click(cell(t, turn(t, caption), name), button=3)
        choose_entry(t, "Open")
        t.shows(editor(t), f"DROP {word}")
        close_page(t)
        t.screen.click(cell(t, turn(t, caption), name), button=3)
        choose_entry(t, "Create")
        t.shows(editor(t), f"CREATE {word}")
        t.check("DROP" not in editor(t).text, "a new routine drops an old one")
        close_page(t)


def page_actions(t):
    """The menu of the page itself, and its way to see what others have made."""
    for kind in ("Procedure", "Function"):
        turn(t, "Tables")
        click_button(t, t.main(), "Actions")
        choose_entry(t, f"Create {kind}...")
        t.shows(editor(t), f"CREATE {kind.upper()}")
        close_page(t)
        lines = t.screen.find(t.main(), "tree", f"{kind}s")  # the sheet of the new one
        cell(t, lines, "new_tidy" if kind == "Procedure" else "new_two")
    click_button(t, t.main(), "Actions")
    choose_entry(t, "Clone...")
    t.screen.window("Clone database")
    t.screen.keys("ctrl+a")
    t.screen.type("korvane_tour_new")
    t.screen.keys("Return")
    title = 'Migration Database "korvane_tour" - Finished'
    t.shows(t.screen.find(t.screen.window(title), "text", "Log"), "Task completed (")
    t.screen.keys("Escape")
    t.screen.gone(title)
    t.equal(
        sorted(t.stage.sql("SELECT table_name FROM information_schema.tables"
                           " WHERE table_schema = 'korvane_tour_new'")),
        ["goods", "new_cheap", "new_makers"], "what the clone holds",
    )  # fmt: skip
    t.stage.sql("DROP DATABASE korvane_tour_new")
    for caption, title in (
        ("Create SQL Dump...", "Create SQL Dump"), ("Migrate...", "Migrate Database"),
    ):  # fmt: skip
        click_button(t, t.main(), "Actions")
        choose_entry(t, caption)
        dialog = t.screen.window(title)
        t.shows(t.screen.find(dialog, "text", "Source database"), "korvane_tour")
        t.screen.keys("Escape")
        t.screen.gone(title)

    t.stage.sql("CREATE TABLE korvane_tour.outside (id INT)")
    refresh(t)
    sheet(t, "Tables: 3")
    cell(t, turn(t, "Tables"), "outside")
    t.stage.sql("DROP TABLE korvane_tour.outside")
    refresh(t)
    sheet(t, "Tables: 2")


def parts(t):
    """The page of a table: its parts, seen and deleted by button, menu and question."""
    t.screen.double_click(cell(t, turn(t, "Tables"), "goods"))
    sheet(t, "Fields: 4")
    for number, (caption, name, kind, query) in enumerate(PARTS):
        lines = turn(t, caption)
        if caption == "References":
            t.equal(
                lines.row(0)[:3],
                ["to_maker", "maker", "new_makers(id)"],
                "the line of the reference",
            )
        t.screen.click(cell(t, lines, name))
        if number % 2:
            t.screen.click(cell(t, lines, name), button=3)
            choose_entry(t, "Delete")
        else:
            click_button(t, t.main(), "Delete")
        answer(t, f'Do you really want to delete {kind} "{name}"?')
        on_server(t, query, ["0"], f"{name} after it was deleted")
        gone(t, lines, name)
    sheet(t, "Triggers: 0")
    t.shot("table-without-parts", lines)

    tab(t, "DDL")
    t.stage.sql("ALTER TABLE korvane_tour.goods ADD seen_later INT")
    refresh(t)
    t.shows(t.screen.find(t.main(), "text", "SQL editor"), "seen_later")
    click_button(t, t.main(), "Clone")
    t.screen.window("Clone table")
    t.screen.keys("Escape")
    t.screen.gone("Clone table")
    close_page(t)


def deleted(t):
    for number, (caption, name, _, kind, query) in enumerate(LISTS):
        lines, name = turn(t, caption), f"new_{name}"
        t.screen.click(cell(t, lines, name), button=3)
        choose_entry(t, "Delete...")
        answer(t, f'Do you really want to delete {kind} "{name}"?')
        on_server(t, query, [], f"{name} after it was deleted")
        gone(t, lines, name)
        if number < 4:
            sheet(t, f"{caption}: 0")
    t.shot("schema-deleted", lines)
    close_page(t)
    choose(t, "shop")


SCENES = (
    ("The lists of a database", lists),
    ("Opened from a list", opened),
    ("What a page of a database does", page_actions),
    ("The parts of a table", parts),
    ("Deleted from a list", deleted),
)
