"""The profile manager, the profile dialog and the jobs that connect."""

import re

from stage import SilentServer, closed_port

DEMO = "Demo shop"


def buttons(where, name):
    """All buttons of a name, from the top."""
    kinds = ("push button", "toggle button", "check box")
    found = [node for node in where.all(name=name) if node.seen_role in kinds]
    return sorted(found, key=lambda node: node.rect[1])


def click_button(t, where, name, lowest=False):
    found = t.screen.wait(lambda: buttons(where, name), f'no button "{name}" in {where}')
    button = found[-1 if lowest else 0]
    t.screen.wait(lambda: button.enabled, f"{button} is disabled")
    t.screen.click(button)


def fill(t, where, row, value):
    """Types a value into a row of a dialog."""
    edit = t.screen.find(where, "text", row)
    t.screen.click(edit)
    t.screen.wait(lambda: edit.focused, f"the row {row} did not get the focus")
    t.screen.keys("ctrl+a")
    t.screen.type(value)
    t.screen.wait(lambda: edit.text == value, f"the row {row} does not take {value!r}")


def profile_list(t):
    return t.screen.find(t.screen.window("Profiles"), "tree", "Profiles")


def focus_demo(t):
    """Turns to the demo's profile; the list is given back."""
    profiles = profile_list(t)
    cell = profiles.cell(profiles.column(0).index(DEMO), 0)
    t.screen.click(cell)
    t.screen.wait(lambda: cell.selected, f"{DEMO} is not selected")
    return profiles


def opening(t):
    dialog = t.screen.window("Profiles")
    profiles = profile_list(t)
    t.screen.wait(lambda: profiles.row_count, "there are no profiles")
    t.check(DEMO in profiles.column(0), f"{DEMO} is not among {profiles.column(0)}")
    for name in ("Connect", "Create", "Edit", "Delete", "Close"):
        t.check(buttons(dialog, name), f'no button "{name}"')
    t.shot("profiles", dialog, profiles)


def menu(t):
    profiles = focus_demo(t)
    t.screen.click(profiles.cell(profiles.column(0).index(DEMO), 0), button=3)
    popup = t.screen.popup()
    t.equal(
        [node.name.split("\t")[0] for node in popup.children],
        ["Connect", "Create", "Edit", "Delete"],
        "the menu of the profiles",
    )
    t.shot("profiles-menu", popup, rest=False)
    t.screen.keys("Escape", "Insert")
    t.screen.window("New profile")
    t.screen.keys("Escape")
    t.screen.gone("New profile")


def edit(t):
    focus_demo(t)
    click_button(t, t.screen.window("Profiles"), "Edit")
    dialog = t.screen.window("Edit profile")
    port = t.stage.sql("SELECT @@port")[0]
    for row, value in (
        ("Profile name", DEMO),
        ("Host name", "127.0.0.1"),
        ("Port", port),
        ("User name", "demo"),
        ("Database", ""),
    ):
        t.equal(t.screen.find(dialog, "text", row).text, value, f"the row {row}")
    password = t.screen.find(dialog, "password text", "Password")
    t.check(t.stage.password() not in password.text, "the password can be read")
    t.check(dialog.find("combo box", "direct"), "the connection type is not direct")
    t.check(not dialog.find(name="Authentication"), "the rows of the tunnel show")
    t.shot("profile-dialog", dialog)

    click_button(t, dialog, "Test Connection")
    job = t.screen.window(re.compile("Test connection to .* - Finished"))
    t.shows(job.find("text", "Log"), "successfully completed")
    t.shot("connection-tested", job)
    click_button(t, job, "Close")
    t.screen.gone(job.name)

    # By keyboard: the tunnel's rows come with its type of connection.
    t.screen.click(t.screen.find(dialog, "text", "Profile name"))
    t.screen.keys("Tab", "s")
    t.screen.find(dialog, name="Authentication")
    t.shot("profile-with-tunnel", dialog)
    click_button(t, dialog, "Cancel")
    t.screen.gone("Edit profile")


def select_database(t):
    click_button(t, t.screen.window("Profiles"), "Edit")
    dialog = t.screen.window("Edit profile")
    t.check(not dialog.find(name="Authentication"), "a cancelled change was kept")
    click_button(t, dialog, "select Database")
    choice = t.screen.window("Select Database")
    names = t.screen.find(choice, "tree", "Name")
    t.equal(sorted(names.column(0)), sorted(t.stage.sql("SHOW DATABASES")), "the databases")
    t.shot("select-database", choice)
    t.screen.click(names.cell(names.column(0).index("shop"), 0))
    click_button(t, choice, "Select")
    t.screen.gone("Select Database")
    t.shows(t.screen.find(dialog, "text", "Database"), "shop")
    t.screen.keys("Escape")
    t.screen.gone("Edit profile")


def connect_in_vain(t, port):
    """To a server that takes its time, until the user has enough."""
    profiles = profile_list(t)
    t.screen.wait(lambda: "Nobody there" in profiles.column(0), "the profile is not in the list")
    t.screen.click(profiles.cell(profiles.column(0).index("Nobody there"), 0))
    click_button(t, t.screen.window("Profiles"), "Connect", lowest=True)
    job = t.screen.window(f'Open connection to "127.0.0.1:{port}" - Running...')
    t.shows(t.screen.find(job, "text", "Log"), f"Opening connection to 127.0.0.1:{port}...")
    t.shot("connecting", job)
    click_button(t, job, "Cancel")
    t.screen.wait(lambda: t.screen.titles() == ["Korvane", "Profiles"], "the job does not close")


def create_and_delete(t):
    before = profile_list(t).column(0)
    click_button(t, t.screen.window("Profiles"), "Create")
    dialog = t.screen.window("New profile")
    for row, value in (("Host name", "localhost"), ("Port", "3306"), ("User name", "root")):
        t.equal(t.screen.find(dialog, "text", row).text, value, f"the row {row}")
    fill(t, dialog, "Profile name", "Nobody there")
    fill(t, dialog, "Host name", "127.0.0.1")
    fill(t, dialog, "Port", str(closed_port()))
    fill(t, dialog, "User name", "somebody")
    t.shot("profile-new", dialog)

    click_button(t, dialog, "Test Connection")
    job = t.screen.window(re.compile("Test connection to .* - Finished"))
    t.shows(job.find("text", "Log"), "127.0.0.1")
    t.check("successfully" not in job.find("text", "Log").text, "a closed port answers")
    t.shot("connection-refused", job)
    click_button(t, job, "Close")
    t.screen.gone(job.name)
    with SilentServer() as silent:
        fill(t, dialog, "Port", str(silent.port))
        click_button(t, dialog, "Create")
        t.screen.gone("New profile")
        connect_in_vain(t, silent.port)

    profiles = profile_list(t)
    t.screen.click(profiles.cell(profiles.column(0).index("Nobody there"), 0))
    t.screen.keys("Delete")
    question = t.screen.window("Korvane", "alert")
    t.check(
        question.find(name="Do you really want to delete this profile?"),
        "the question is another one",
    )
    t.shot("profile-delete", question)
    click_button(t, question, "Yes")
    t.screen.wait(lambda: profiles.column(0) == before, "the profile was not deleted")


def choose_database(t, database):
    """Binds the demo's profile to a database, or frees it with the empty name."""
    focus_demo(t)
    click_button(t, t.screen.window("Profiles"), "Edit")
    dialog = t.screen.window("Edit profile")
    edit = t.screen.find(dialog, "text", "Database")
    t.screen.click(edit)
    t.screen.keys("ctrl+a", "Delete")
    t.screen.type(database)
    t.screen.wait(lambda: edit.text == database, "the row Database does not take the name")
    click_button(t, dialog, "Update")
    t.screen.gone("Edit profile")


def connect(t):
    focus_demo(t)
    t.screen.keys("Return")
    t.screen.gone("Profiles")
    main = t.main()
    t.screen.find(main, "page tab", DEMO)
    version = t.stage.sql("SELECT VERSION()")[0]
    t.screen.find(main, name=version)
    port = t.stage.sql("SELECT @@port")[0]
    t.check(
        any(f"127.0.0.1:{port}" in node.name for node in main.walk()),
        "the status bar does not show the connection",
    )
    t.shot("workspace", main, main.find(name=version))
