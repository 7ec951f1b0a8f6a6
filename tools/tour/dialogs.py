"""What scenes do with the simple dialogs: questions, lists to choose from, names to type."""

from profiles import click_button


def question(t, text):
    """The question that stands on the screen, which has to have these words in it."""

    def look():
        return next(
            (
                window
                for window in t.screen.windows()
                if window.find("push button", "Yes")
                and any(text in node.seen_name for node in window.walk())
            ),
            None,
        )

    return t.screen.wait(look, lambda: f"nobody asks {text!r} among {t.screen.titles()}")


def answer(t, text, button="Yes"):
    box = question(t, text)
    click_button(t, box, button)
    t.screen.wait(
        lambda: not any(window.find("push button", "Yes") for window in t.screen.windows()),
        "the question does not go",
    )


def select(t, title, name):
    """Chooses a line of a list dialog."""
    dialog = t.screen.window(title)
    lines = t.screen.find(dialog, "tree", "Name")
    names = lines.column(0)
    t.check(name in names, f"{name} is not among {names}")
    t.screen.click(lines.cell(names.index(name), 0))
    click_button(t, dialog, "Select")
    t.screen.gone(title)


def entry(t, caption):
    """An entry of the menu that has just popped up; it has to be enabled."""

    def look():
        menu = t.screen.popup()
        return next((each for each in menu.children if each.name.split("\t")[0] == caption), None)

    found = t.screen.wait(
        look, lambda: f"no {caption} among {[each.name for each in t.screen.popup().children]}"
    )
    t.check(found.enabled, f'the entry "{caption}" is disabled')
    return found


def choose_entry(t, caption):
    t.screen.click(entry(t, caption))


def rename(t, title, name):
    """Types a name into the dialog of this title, and presses Return."""
    t.screen.window(title)
    t.screen.keys("ctrl+a")
    t.screen.type(name)
    t.screen.keys("Return")
    t.screen.gone(title)




def on_server(t, query, wanted, what):
    """Waits until a query gives these lines."""
    t.screen.wait(
        lambda: t.stage.sql(query) == wanted,
        lambda: f"{what}: wanted {wanted}, found {t.stage.sql(query)}",
    )
