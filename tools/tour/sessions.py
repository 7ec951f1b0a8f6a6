"""What a workspace brings back: after a close, and after a workbench that was killed."""

import time

from profiles import DEMO, focus_demo
from queries import editor, new_page, type_text

TYPED = "SELECT 'typed and never saved' AS kept;"
JOURNAL = 5  # seconds in which the journal is up to date for certain


def open_workspace(t):
    focus_demo(t)
    t.screen.keys("Return")
    t.screen.gone("Profiles")
    t.screen.find(t.main(), "page tab", DEMO)


def texts(t):
    """The texts of all query pages, each of which comes into view for it."""
    found = []
    for tab in t.main().all("page tab", "Query"):
        t.screen.click(tab)
        t.screen.wait(lambda tab=tab: tab.in_front, "the page does not come into view")
        found.append(editor(t).text)
    return found


def reopen(t):
    t.choose("File", "New Connection...")
    open_workspace(t)
    t.equal(texts(t), [], "the pages of a workspace that was left without any")
    t.choose("Query", "Reopen Closed Query")
    t.screen.find(t.main(), "page tab", "Query")
    t.equal(editor(t).text, "SELECT DATABASE();", "the query that another workspace had")


def killed(t):
    type_text(t, new_page(t), TYPED)
    wanted = ["SELECT DATABASE();", TYPED]
    time.sleep(JOURNAL)
    t.screen.ending = True
    t.stage.workbench.kill()
    t.stage.workbench.wait()
    t.stage.start_workbench()
    t.screen.ending = False
    t.screen.connect()
    open_workspace(t)
    t.equal(texts(t), wanted, "the queries after the workbench was killed")
    t.shot("after-a-crash", editor(t))

    t.choose("File", "Close Connection")
    open_workspace(t)
    t.equal(texts(t), wanted, "the queries of a workspace that was closed")
    t.screen.keys("ctrl+shift+F4")
    t.screen.wait(lambda: not t.main().all("page tab", "Query"), "not all pages close")
    t.screen.keys("ctrl+shift+t")
    t.screen.find(t.main(), "page tab", "Query")
    t.check(editor(t).text in wanted, "a closed query does not come back")
