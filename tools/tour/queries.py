"""A query page: rows, plan, log and errors."""

from profiles import click_button

QUERY = """\
-- What was wished for lately
SET @since = '2025-12-20';
SELECT COUNT(*) AS recent_orders FROM orders WHERE ordered_at >= @since;
SELECT o.id, o.ordered_at, c.name AS customer, n.native_name AS country,
p.name AS product, l.quantity, l.amount, o.wish, p.attributes
FROM orders AS o
JOIN customers AS c ON c.id = o.customer_id
JOIN countries AS n ON n.code = c.country_code
JOIN order_lines AS l ON l.order_id = o.id
JOIN products AS p ON p.id = l.product_id
WHERE o.ordered_at >= @since AND o.wish IS NOT NULL
ORDER BY o.id DESC, l.line_no LIMIT 200;"""


def editor(t):
    """The editor of the page in view."""
    return t.screen.find(t.main(), "text", "SQL editor")


def result(t):
    return t.screen.find(t.main(), "table", "Data")


def type_text(t, where, text):
    """Types lines that all start at the left, for a new line begins below the one before."""
    lines = text.split("\n")
    for i, line in enumerate(lines):
        if i:
            t.screen.keys("Return")
        t.screen.type(line)
    t.screen.wait(
        lambda: where.text.replace("\r\n", "\n") == text,
        lambda: f"typing came out as {where.text!r}",
    )


def new_page(t, key="ctrl+n"):
    before = len(list(t.main().all("page tab", "Query")))
    t.screen.keys(key)
    t.screen.wait(
        lambda: len(list(t.main().all("page tab", "Query"))) == before + 1,
        "no new query page came",
    )
    where = editor(t)
    t.screen.wait(lambda: where.focused, "the editor of a new page has no focus")
    t.equal(where.text, "", "the text of a new page")
    return where


def use_boxes(t):
    """The database of the page in view; the box before it belongs to the objects. Both are named by
    what is chosen in them."""
    return t.main().all("combo box")[1:]


def use(t, name):
    """Chooses the database of the page in view."""
    box = t.screen.wait(lambda: use_boxes(t), "there is no database to choose")[0]
    t.screen.click(box)
    items = t.screen.wait(
        lambda: [node for node in box.children if node.role == "list" and node.showing],
        'the list of "Use:" does not open',
    )[0]
    entry = next((node for node in items.children if node.name == name), None)
    t.check(entry, f'"{name}" is not in the list of "Use:"')
    t.screen.click(entry)
    t.screen.wait(lambda: box.name == name, f'"Use:" does not show {name}')


def status(t, text):
    t.screen.wait(
        lambda: any(text in node.name for node in t.main().all("label")),
        f"the status bar does not show {text!r}",
    )


def tab(t, name):
    """Turns to one of the three views of the result."""
    click_button(t, t.main(), name)


def run(t):
    where = new_page(t)
    status(t, "Rows: -")
    use(t, "shop")
    t.screen.click(where)
    type_text(t, where, QUERY)
    t.screen.keys("ctrl+r")
    rows = t.screen.wait(lambda: t.main().find("table", "Data"), "there are no rows")
    wanted = [line.split("\t") for line in t.stage.sql(f"USE shop; {QUERY}")[1:]]
    t.screen.wait(
        lambda: rows.row_count == len(wanted),
        lambda: f"wanted {len(wanted)} rows, found {rows.row_count}",
    )
    t.equal(
        rows.columns,
        "id ordered_at customer country product quantity amount wish attributes".split(),
        "the columns",
    )
    for i in (0, 1, len(wanted) // 2, len(wanted) - 1):
        found = rows.row(i)
        t.equal(found, wanted[i], f"row {i}")
    status(t, f"Rows: {len(wanted)}")
    t.shot("query-result", t.main(), where, rows)


def plan_and_log(t):
    tab(t, "Explain")
    plan = t.screen.find(t.main(), "tree", "Explain")
    t.equal(
        plan.columns,
        ["ID", "Type of SELECT", "Table", "Join type", "Possible keys", "Use key", "Key length",
         "Ref. columns", "Rows", "Extra"],
        "the columns of the plan",
    )  # fmt: skip
    t.screen.wait(lambda: plan.row_count, "the plan is empty")
    t.equal(sorted(plan.column("Table")), ["c", "l", "n", "o", "p"], "the tables of the plan")
    t.shot("query-plan", plan)

    tab(t, "Log")
    log = t.screen.find(t.main(), "tree", "Log")
    t.equal(
        log.columns,
        ["#", "Time", "Duration (ms)", "%", "Status", "Query"],
        "the columns of the log",
    )
    t.screen.wait(lambda: log.row_count, "the log is empty")
    t.equal(set(log.column("Status")), {"OK"}, "the states of the log")
    for start in ("SET @since", "SELECT COUNT(*)", "SELECT o.id"):
        t.check(
            any(start in text for text in log.column("Query")), f"{start!r} is not in the log"
        )
    t.shot("query-log", log)

    t.screen.click(log.cell(0, 0))
    t.screen.keys("ctrl+f")
    t.screen.focused("text", "Search text")
    t.screen.type("count")
    found = next(i for i, text in enumerate(log.column("Query")) if "COUNT" in text)
    t.screen.wait(lambda: log.cell(found, "Query").selected, "the search in the log finds nothing")
    t.shot("log-search", log)
    t.screen.keys("Escape", "ctrl+c")
    copied = "\t".join(log.row(found))
    where = new_page(t)
    t.screen.keys("ctrl+v")
    t.screen.wait(lambda: where.text.strip() == copied, "the row of the log was not copied")
    t.screen.keys("ctrl+F4")
    t.screen.wait(lambda: t.main().find("tree", "Log"), "the page before does not come back")
    tab(t, "Result")


def failure(t):
    where = new_page(t, "ctrl+q")
    use(t, "shop")
    t.screen.click(where)
    type_text(t, where, "SELECT name, price FROM produkts\nWHERE price > 100;")
    t.screen.keys("F5")
    box = t.screen.find(t.main(), "text", "Error")
    t.shows(box, "ER_NO_SUCH_TABLE (1146) - Table 'shop.produkts' doesn't exist")
    status(t, "Rows: -")
    t.shot("query-error", box)


def lost_database(t):
    """What fails before the statements run is shown in a box of its own."""
    t.stage.sql("CREATE OR REPLACE DATABASE korvane_tour_new")
    new_page(t)
    use(t, "korvane_tour_new")
    t.stage.sql("DROP DATABASE korvane_tour_new")
    click_button(t, t.main(), "Execute")
    box = t.screen.window("Korvane", "dialog")
    t.shows(t.screen.find(box, "text", "Message"), "Unknown database 'korvane_tour_new'")
    t.shot("error-box", box)
    click_button(t, box, "OK")
    t.screen.wait(lambda: t.screen.titles() == ["Korvane"], "the box does not close")
    t.screen.keys("ctrl+F4")


def selected(t):
    where = editor(t)
    t.screen.click(where)
    t.screen.keys("ctrl+a")
    wanted = "SELECT sku, price, state, on_sale_since FROM products ORDER BY id"
    type_text(t, where, f"{wanted};\nSELECT nonsense;")
    t.screen.keys("ctrl+Home", "shift+End", "ctrl+shift+r")
    rows = result(t)
    wanted = [line.split("\t") for line in t.stage.sql(f"USE shop; {wanted}")]
    t.screen.wait(lambda: rows.row_count == len(wanted), "not the rows of the selection")
    t.equal(rows.row(0), wanted[0], "the first row")
    t.check(not t.main().find("text", "Error"), "the error of the run before still shows")
    t.shot("query-selected", rows)
