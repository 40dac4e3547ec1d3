"""Numbers that cross the library's boundary, by their names."""

import enum


class PropertyPageId(enum.IntEnum):
    """Pages that a host puts into its own windows."""

    METADATA = 1
    PROPERTIES = 2
    VIEWPOINT = 3


class MessageAnswer(enum.IntEnum):
    """Buttons of a message."""

    OK = 1
    CANCEL = 2
    YES = 6
    NO = 7
