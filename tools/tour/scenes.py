"""The walk: the scenes in their order. Each leaves the screen as the next one expects it."""

import editing
import files
import grids
import helpers
import jobs
import objects
import profiles
import queries
import rows
import schemas
import sessions
import tables
import tree
import windows

# What leads into a workspace.
WAY_IN = (
    ("The profiles come up by themselves", profiles.opening),
    ("A profile is connected", profiles.connect),
)

# What is played on either server. Each of these parts can be played alone.
WORKSPACE = {
    "objects": (("The objects of a database", objects.browse),),
    "tables": tables.SCENES,
    "tree": tree.SCENES,
    "schemas": schemas.SCENES,
    "rows": rows.SCENES,
}

WHOLE = (
    WAY_IN[0],
    ("The menu of the profiles", profiles.menu),
    ("A profile is looked at", profiles.edit),
    ("Its database is chosen from the server's", profiles.select_database),
    ("A profile is made, tested and deleted", profiles.create_and_delete),
    WAY_IN[1],
    ("The entries of the menu", windows.menus),
    *(scene for scenes_of_part in WORKSPACE.values() for scene in scenes_of_part),
    *jobs.SCENES,
    *helpers.SCENES,
    ("A query and its rows", queries.run),
    ("Its plan and its log", queries.plan_and_log),
    ("A statement that fails", queries.failure),
    ("A database that is gone", queries.lost_database),
    ("Only what is selected", queries.selected),
    ("The result as text", files.export_text),
    ("A query is saved", files.save),
    ("A query is opened and duplicated", files.open_and_duplicate),
    ("Find and replace", editing.find_and_replace),
    ("Comments, undo and zoom", editing.commands),
    ("Sorting and searching rows", grids.sort_and_search),
    ("Copying rows", grids.copy),
    ("Changing cells", grids.edit),
    ("The charset of the session", windows.charset),
    ("Turning pages", windows.pages),
    ("About and home page", windows.about_and_home_page),
    ("Refreshing and closing pages", windows.refresh_and_close_pages),
    ("A connection to one database", windows.one_database),
    ("Closing the connection", windows.close_connection),
    ("What is remembered", windows.remembered),
    ("A closed query is opened again", sessions.reopen),
    ("A workbench that is killed", sessions.killed),
    ("The end", windows.leave),
)


def scenes(server, part):
    """What is played on a server; all of it, or only the part of a name."""
    if part:
        return (*WAY_IN, *WORKSPACE[part])
    if server == "mariadb":
        return WHOLE
    workspace = (scene for scenes_of_part in WORKSPACE.values() for scene in scenes_of_part)
    return (*WAY_IN, *workspace, ("The end", windows.leave))
