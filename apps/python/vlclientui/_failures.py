"""The one exception of the library."""


class RuntimeFailure(RuntimeError):
    """A failure of the library, or one that a client in Python reports.

    Attributes:
        description: a text for a person.
        kind: General, TypeMismatch, Overflow, MissingObject, InvalidIndex or DivisionByZero.
    """

    def __init__(self, description: str = "", kind: str = "General") -> None:
        super().__init__(description)
        self.description = description
        self.kind = kind
