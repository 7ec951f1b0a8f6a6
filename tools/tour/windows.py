"""The main window: its menus, pages and connections."""

import time

from profiles import DEMO, choose_database, click_button, focus_demo, profile_list
from queries import editor, new_page, result, status, type_text, use, use_boxes

# What each menu holds while a server is connected and no page is open; "-" has no work yet.
MENUS = {
    "File": ["New Connection...", "Close Connection", "Exit"],
    "View": ["Select Charset...", "Refresh"],
    "Schema": [
        "-Create...", "Open", "-Create Table...", "-Create View...", "Create Procedure...",
        "Create Function...", "-Create Event...", "Migrate...", "Clone...",
        "Create SQL Dump...", "Checksum Data (CRC32)...", "-Modify...", "Delete...",
    ],
    "Query": [
        "New", "Open...", "-Reopen Closed Query", "-Save", "-Save As...", "-Duplicate", "-Execute", "-Execute Selected",
        "-Export as CVS...", "-Export as Text",
    ],
    "Tools": ["Execute SQL Dump...", "Server", "Other"],
    "Window": ["Close Page", "Close All Pages"],
    "Help": ["Korvane Home Page", "About Korvane"],
}  # fmt: skip
SERVER = ["Users", "Threads", "Variables", "Status", "Counters", "Charsets", "Plugins", "Engines"]


def bar(t):
    return [node.name for node in t.screen.find(t.main(), "menu bar").children if node.showing]


def entries(menu):
    return [node for node in menu.children if node.role == "menu item" and node.name]


def menus(t):
    t.equal(bar(t), list(MENUS), "the menu bar")
    for caption, wanted in MENUS.items():
        entry = t.menu(caption, wanted[0].lstrip("-"))
        menu = next(n for n in t.main().find("menu bar").walk() if n.role == "popup menu")
        found = [node.name if node.enabled else f"-{node.name}" for node in entries(menu)]
        t.equal(found, wanted, f"the menu {caption}")
        if caption == "Schema":
            t.shot("schema-menu", entry, rest=False)
        t.close_menu(2)
    t.menu("Tools", "Server", SERVER[0])
    menu = [n for n in t.main().find("menu bar").walk() if n.role == "popup menu"][-1]
    t.equal([node.name for node in entries(menu)], SERVER, "the menu Server")
    t.shot("server-menu", menu, rest=False)
    t.close_menu(3)


def charset(t):
    """Another charset ends the session; the next statement opens it again as its profile says."""
    new_page(t)
    before = session(t)
    dialog, names = open_charsets(t)
    t.equal(
        names.column("Name"),
        sorted(t.stage.sql("SELECT character_set_name FROM information_schema.character_sets")),
        "the charsets",
    )
    t.shot("select-charset", dialog)
    t.screen.click(names.cell(names.column("Name").index("utf8mb3"), 0))
    click_button(t, dialog, "Select")
    t.screen.gone("Select Charset")
    second = session(t)
    t.check(second[0] != before[0], "the session of another charset is still the old one")
    t.equal(second[1], before[1], "the charset of the new session")

    dialog, names = open_charsets(t)
    t.screen.keys("Escape")
    t.screen.gone("Select Charset")
    t.equal(session(t), second, "the session after a choice that was cancelled")
    dialog, names = open_charsets(t)
    t.screen.double_click(names.cell(names.column("Name").index("utf8mb4"), 0))
    t.screen.gone("Select Charset")
    t.check(session(t)[0] != second[0], "a double click does not choose")
    t.screen.keys("ctrl+F4")


def open_charsets(t):
    t.choose("View", "Select Charset...")
    dialog = t.screen.window("Select Charset")
    names = t.screen.find(dialog, "tree", "Charsets")
    current = names.cell(names.column("Name").index("utf8mb4"), 0)
    t.screen.wait(lambda: current.selected, "the charset of the session is not focused")
    return dialog, names


def session(t):
    """Number and charset of the workbench's own session."""
    where = editor(t)
    t.screen.click(where)
    t.screen.keys("ctrl+a")
    # A name of its own tells this answer from the one before.
    name = f"asked_{time.monotonic_ns()}"
    type_text(t, where, f"SELECT CONNECTION_ID(), @@character_set_client AS {name};")
    t.screen.keys("ctrl+r")
    rows = result(t)
    t.screen.wait(lambda: name in rows.columns and rows.row_count == 1, "there is no row")
    return rows.row(0)[:2]


def pages_of(t):
    """The tabs of the pages, not that of the connection."""
    return [node for node in t.main().all("page tab") if node.name != DEMO]


def close_page(t):
    """By key; the page is gone before anything else is done."""

    def count():
        heights = [node.rect[1] for node in pages_of(t)]  # the sheets of a page lie lower
        return sum(height < min(heights) + 10 for height in heights)

    before = count()
    t.screen.keys("ctrl+F4")
    t.screen.wait(lambda: count() == before - 1, "the page does not close")


def pages(t):
    tabs = pages_of(t)
    t.check(len(tabs) > 2, "there are too few pages to turn")
    start = next(i for i, node in enumerate(tabs) if node.in_front)
    for key, step in (("ctrl+Tab", 1), ("ctrl+shift+Tab", 0), ("ctrl+shift+Tab", -1)):
        t.screen.keys(key)
        wanted = (start + step) % len(tabs)
        t.screen.wait(lambda: pages_of(t)[wanted].in_front, f"{key} does not turn the page")
    t.menu("Window", "Close Page")
    menu = next(n for n in t.main().find("menu bar").walk() if n.role == "popup menu")
    found = [node for node in menu.children if node.name]
    t.equal(
        [node.name for node in found],
        ["Close Page", "Close All Pages"] + [node.name for node in tabs],
        "the menu Window",
    )
    t.equal(
        [node.checked for node in found[2:]],
        [node.in_front for node in pages_of(t)],
        "the marks of the menu Window",
    )
    t.shot("window-menu", menu, rest=False)
    t.screen.click(found[2])
    t.screen.wait(lambda: pages_of(t)[0].in_front, "the first page did not come into view")
    status(t, "Rows: ")


def about_and_home_page(t):
    t.choose("Help", "About Korvane")
    box = t.screen.window("About Korvane")
    t.check(any("Korvane" in node.name for node in box.all("label")), "about what?")
    t.shot("about", box)
    click_button(t, box, "OK")
    t.screen.gone("About Korvane")
    t.choose("Help", "Korvane Home Page")
    t.screen.wait(lambda: "http" in t.stage.browsed(), "no browser was asked for the home page")


def refresh_and_close_pages(t):
    t.stage.sql("CREATE OR REPLACE DATABASE korvane_tour_new")
    try:
        t.choose("View", "Refresh")
        use(t, "korvane_tour_new")
    finally:
        t.stage.sql("DROP DATABASE korvane_tour_new")
    count = len(pages_of(t))
    t.choose("Window", "Close Page")
    t.screen.wait(lambda: len(pages_of(t)) == count - 1, "the page does not close")
    t.screen.click(pages_of(t)[0], button=2)
    t.screen.wait(lambda: len(pages_of(t)) == count - 2, "the middle button does not close")
    new_page(t)
    count = len(pages_of(t))
    menu = tab_menu(t)
    t.shot("tab-menu", menu, rest=False)
    t.screen.click(menu.children[0])
    t.screen.wait(lambda: len(pages_of(t)) == count - 1, "the menu of a tab does not close it")
    t.screen.click(tab_menu(t).children[1])
    t.screen.wait(lambda: not pages_of(t), "not all pages close")
    new_page(t)
    t.screen.keys("ctrl+shift+F4")
    t.screen.wait(lambda: not pages_of(t), "not all pages close")


def tab_menu(t):
    t.screen.click(pages_of(t)[0], button=3)
    menu = t.screen.popup()
    t.equal([node.name for node in menu.children], ["Close", "Close All"], "the menu of a tab")
    return menu


def one_database(t):
    """A second connection, which is bound to a database."""
    double_click_behind_tabs(t)
    choose_database(t, "shop")
    focus_demo(t)
    click_button(t, t.screen.window("Profiles"), "Connect", lowest=True)
    t.screen.gone("Profiles")
    t.screen.wait(lambda: len(connections(t)) == 2, "there is no second connection")
    t.screen.wait(lambda: connections(t)[1].in_front, "the new connection is not in front")
    t.equal(schema_entries(t)[0], "Open", "the first entry of Schema")
    where = new_page(t)
    t.check(not use_boxes(t), "there is a database to choose")
    type_text(t, where, "SELECT DATABASE();")
    t.screen.keys("F5")
    rows = result(t)
    t.screen.wait(lambda: rows.row_count == 1, "there is no row")
    t.equal(rows.cell(0, 0).name, "shop", "the database of the connection")
    t.shot("one-database", rows)
    t.screen.click(connections(t)[0])
    t.screen.wait(lambda: connections(t)[0].in_front, "the first connection is not in front")
    t.equal(schema_entries(t)[0], "Create...", "the first entry of Schema")
    t.screen.click(connections(t)[1], button=2)
    t.screen.wait(lambda: len(connections(t)) == 1, "the second connection does not close")


def double_click_behind_tabs(t):
    x, y, width, height = connections(t)[-1].rect
    t.screen.double_click((x + width + 300, y + height // 2))
    t.screen.window("Profiles")


def connections(t):
    return t.main().all("page tab", DEMO)


def schema_entries(t):
    t.menu("Schema", "Open")
    menu = next(n for n in t.main().find("menu bar").walk() if n.seen_role == "popup menu")
    found = [node.name for node in entries(menu) if node.showing]
    t.close_menu(2)
    return found


def close_connection(t):
    t.choose("File", "Close Connection")
    t.screen.window("Profiles")
    t.shot("profiles-again", profile_list(t))
    click_button(t, t.screen.window("Profiles"), "Close")
    t.screen.gone("Profiles")
    t.equal(bar(t), ["File", "Help"], "the menu bar without a connection")
    t.check(not t.menu("File", "Close Connection").enabled, "nothing can be closed")
    t.shot("empty-window", t.main())
    t.close_menu(2)
    for how in (
        lambda: t.choose("File", "New Connection..."),
        lambda: click_button(t, t.main(), "New tab"),
    ):
        how()
        t.screen.window("Profiles")
        t.screen.keys("Escape")
        t.screen.gone("Profiles")


def remembered(t):
    """The window comes back in its size and the profiles with the one last opened."""
    t.screen.resize_window("Korvane", 1000, 700)
    t.screen.wait(lambda: t.main().rect[2:] == (1000, 700), "the window keeps its size")
    leave(t)
    t.stage.start_workbench()
    t.screen.ending = False
    t.screen.connect()
    profiles = profile_list(t)
    t.screen.wait(lambda: t.main().rect[2:] == (1000, 700), "the size was not remembered")
    t.screen.wait(
        lambda: profiles.cell(profiles.column(0).index(DEMO), 0).selected,
        "the profile opened last is not focused",
    )
    t.shot("started-again", profiles)
    t.screen.keys("Escape")
    t.screen.gone("Profiles")


def leave(t):
    t.screen.ending = True
    t.choose("File", "Exit")
    process = t.stage.workbench
    t.screen.wait(lambda: process.poll() is not None, "the workbench does not end")
    t.equal(process.returncode, 0, "the exit code")
    t.equal(t.stage.workbench_output().strip(), "", "what the workbench said")
