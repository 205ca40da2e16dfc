"""The processors that installers are made for, and what making one takes on another machine."""

import dataclasses

import plugin_facts


@dataclasses.dataclass(frozen=True)
class Processor:
    """One that an installer is made for."""

    name: str  # as elf_facts has it
    toolchain: str = ""  # CMake's file that compiles for it on machines of another kind
    tools: str = ""  # what the names of the tools for it begin with there

    def mark(self):
        """Its name as a part of file names, where it is not this machine's."""
        return [self.name] if self.toolchain else []


FROM_ELSEWHERE = {"arm64": Processor("arm64", "arm64.cmake", "aarch64-linux-gnu-")}


class ProcessorError(Exception):
    """No installer can be made here for that processor; the text says why."""


def wanted(name):
    """The processor of that name, this machine's own when there is none."""
    own = plugin_facts.own_processor()
    if name in (None, own):
        return Processor(own)
    if name not in FROM_ELSEWHERE:
        known = " and ".join(sorted({own, *FROM_ELSEWHERE}))
        raise ProcessorError(f"no installer for {name} can be made on this machine, only for {known}")
    return FROM_ELSEWHERE[name]
