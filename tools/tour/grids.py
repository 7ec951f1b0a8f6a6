"""Rows of a result: their order, search, copies and changes."""

from queries import editor, new_page, result, type_text, use

# A database of the tour's own: what is changed must not be the user's.
MAKE = (
    "CREATE OR REPLACE DATABASE korvane_tour CHARACTER SET utf8mb4;"
    "CREATE TABLE korvane_tour.prices (sku CHAR(7) PRIMARY KEY, name VARCHAR(100), "
    "price DECIMAL(10,2), note VARCHAR(40)) DEFAULT CHARSET utf8mb4;"
    "INSERT INTO korvane_tour.prices SELECT sku, name, price, NULL FROM shop.products "
    "WHERE sku LIKE 'CUP%' OR sku LIKE 'TEA%'"
)

def sort_and_search(t):
    t.stage.sql(MAKE)
    where = new_page(t)
    use(t, "korvane_tour")
    t.screen.click(where)
    type_text(t, where, "SELECT * FROM prices;")
    t.screen.keys("ctrl+r")
    rows = result(t)
    names = t.stage.sql("SELECT price FROM korvane_tour.prices ORDER BY price")
    t.screen.wait(lambda: rows.row_count == len(names), "not all rows came")
    t.screen.click(rows.header("price"))
    t.screen.wait(lambda: rows.column("price") == names, "not in ascending order")
    t.screen.click(rows.header("price"))
    t.screen.wait(lambda: rows.column("price") == names[::-1], "not in descending order")
    t.shot("sorted", rows)

    t.screen.click(rows.cell(0, 0))
    t.screen.keys("ctrl+f")
    t.screen.type("bowl")
    wanted = next(i for i, name in enumerate(rows.column("name")) if "bowl" in name)
    found = rows.cell(wanted, "name")
    t.screen.wait(lambda: found.selected, "the cell with the text is not selected")
    t.shot("grid-search", rows)
    t.screen.keys("Escape")


def copy(t):
    rows = result(t)
    t.screen.click(rows.cell(0, "sku"))
    t.screen.keys("shift+Right", "shift+Down", "ctrl+c")
    where = editor(t)
    t.screen.click(where)
    t.screen.keys("ctrl+End", "Return", "ctrl+v")
    lines = ["\t".join(rows.row(i)[:2]) for i in (0, 1)]
    t.shows(where, lines[0])
    t.shows(where, lines[1])
    t.screen.click(rows.cell(0, "sku"))
    t.screen.keys("shift+Right", "ctrl+shift+c")
    t.screen.click(where)
    t.screen.keys("ctrl+a", "ctrl+v")
    t.screen.wait(
        lambda: where.text.replace("\r\n", "\n").strip() == f"sku\tname\n{lines[0]}",
        lambda: f"the copy with headers came out as {where.text!r}",
    )
    t.shot("copied", where)


def edit(t):
    rows = result(t)
    sku = rows.cell(0, "sku").name
    t.screen.double_click(rows.cell(0, "note"))
    t.screen.type("reduced")
    t.shot("cell-edit", rows, settled=False)
    t.screen.keys("Return")
    t.screen.wait(lambda: rows.cell(0, "note").name == "reduced", "the cell keeps its old value")
    stored = t.stage.sql(f"SELECT note FROM korvane_tour.prices WHERE sku = '{sku}'")
    t.equal(stored, ["reduced"], "the note on the server")

    t.screen.click(rows.cell(0, "note"))
    t.screen.keys("ctrl+0")
    stored = lambda: t.stage.sql(  # noqa: E731
        f"SELECT note IS NULL FROM korvane_tour.prices WHERE sku = '{sku}'"
    )
    t.screen.wait(lambda: stored() == ["1"], "the cell did not become NULL")

    # What the server refuses is said at the cell and stays in its editor.
    t.screen.double_click(rows.cell(0, "price"))
    t.screen.keys("ctrl+a")
    t.screen.type("dear")
    t.screen.keys("Return")
    t.shot("cell-refused", rows)
    t.screen.keys("Escape")
    t.screen.wait(lambda: rows.cell(0, "price").name != "dear", "a refused value stays")
