"""One hostile document, and how it is converted."""
import dataclasses
import typing

import bait


@dataclasses.dataclass(frozen=True)
class Road:
    """A document that asks for a secret.

    `content` is text or bytes to which the secret's addresses are added; or a function, which is given
    the path to write and one that adds the addresses to a text.
    """
    label: str
    name: str  # of the file; "*" stands for the label
    target: str
    content: typing.Union[str, bytes, typing.Callable]
    place: str = bait.OUTSIDE
    may_fail: bool = True  # otherwise the conversion has to succeed, and to keep the word "Witness"
    tool: bool = False  # whether the target is a tool instead
    holds: str = ""  # for a document that holds the secret itself: an expression for what is to be found

    @property
    def file(self):
        return self.name.replace("*", self.label.replace(" ", "-"))

    def write(self, secrets):
        path = secrets.inputs / self.file
        def fill(text):
            return secrets.fill(text, self.place)
        if callable(self.content):
            self.content(path, fill)
        elif isinstance(self.content, bytes):
            path.write_bytes(self.content)
        else:
            path.write_text(fill(self.content), encoding="utf-8")
        return path


def container(parts):
    """A document made of ZIP parts, which may ask for secrets."""
    def write(path, fill):
        path.write_bytes(bait.packed({name: fill(part) if isinstance(part, str) else part for name, part in parts.items()}))
    return write
