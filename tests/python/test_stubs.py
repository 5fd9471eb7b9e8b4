"""The type stubs say what the module has: every public name, argument and default, and nothing else."""
import ast
import dataclasses
import inspect
import unittest

import zelprofiler01 as zel
from zelprofiler01 import _zelprofiler01 as extension

from support import package_folder

TYPES = {"bool", "int", "str", "float", "Any"}
STUB = ast.parse((package_folder() / "__init__.pyi").read_text())
FUNCTIONS, CLASSES, NAMES = {}, {}, set()
for _node in STUB.body:
    if isinstance(_node, ast.FunctionDef):
        FUNCTIONS.setdefault(_node.name, []).append(_node)
    elif isinstance(_node, ast.ClassDef):
        CLASSES[_node.name] = _node
    elif isinstance(_node, ast.AnnAssign):
        NAMES.add(_node.target.id)
    elif isinstance(_node, ast.Assign):
        NAMES.add(_node.targets[0].id)


def stub_arguments(function):
    """(name, keyword alone, default as a text or None) of each argument."""
    arguments = function.args
    places = arguments.posonlyargs + arguments.args
    defaults = [None] * (len(places) - len(arguments.defaults)) + arguments.defaults
    found = [(a.arg, False, d and ast.unparse(d)) for a, d in zip(places, defaults)]
    return found + [(a.arg, True, d and ast.unparse(d)) for a, d in zip(arguments.kwonlyargs, arguments.kw_defaults)]


def arguments_of(function):
    return [(p.name, p.kind is p.KEYWORD_ONLY, None if p.default is p.empty else repr(p.default))
            for p in inspect.signature(function).parameters.values()]


def members(name):
    """Attributes and methods that a class has in the type file."""
    attributes, methods = [], {}
    for node in CLASSES[name].body:
        if isinstance(node, ast.AnnAssign):
            attributes.append(node.target.id)
        elif isinstance(node, ast.FunctionDef):
            methods.setdefault(node.name, node)
    return attributes, methods


def is_property(node):
    return any(isinstance(decorator, ast.Name) and decorator.id == "property" for decorator in node.decorator_list)


class TheStubs(unittest.TestCase):
    def test_have_every_public_name_and_no_other(self):
        public = {name for name in {*FUNCTIONS, *CLASSES, *NAMES} if not name.startswith("_")}
        self.assertEqual(public, set(zel.__all__))
        self.assertIn("__version__", NAMES)
        self.assertTrue((package_folder() / "py.typed").exists())

    def test_have_the_arguments_and_defaults_of_the_functions(self):
        for name, variants in FUNCTIONS.items():
            wanted = arguments_of(getattr(zel, name))
            for variant in variants:
                found = stub_arguments(variant)
                if len(variants) > 1:  # a variant for a value of an argument has that without a default
                    found = [(a, k, d if d is not None or w[2] is None or a != "full" else w[2])
                             for (a, k, d), w in zip(found, wanted)]
                self.assertEqual(found, wanted, name)

    def test_have_the_bases_and_methods_of_the_classes(self):
        for name, node in CLASSES.items():
            if name.startswith("_"):
                continue
            kind = getattr(zel, name)
            for base in map(ast.unparse, node.bases):
                if base != "NamedTuple":
                    self.assertIn(base, [each.__name__ for each in kind.__mro__], name)
            _, methods = members(name)
            for method, written in methods.items():
                if name == "ProfileControl" or method in ("__iter__", "__len__", "__getitem__"):
                    continue
                found = inspect.getattr_static(kind, method)
                self.assertEqual(is_property(written), isinstance(found, property), f"{name}.{method}")
                if not is_property(written):
                    self.assertEqual(stub_arguments(written), arguments_of(found), f"{name}.{method}")
            public = {each for each in vars(kind) if not each.startswith("_") and callable(getattr(kind, each))}
            if name != "ProfileControl":
                self.assertLessEqual(public, set(methods), name)

    def test_have_the_fields_of_the_results(self):
        for name in CLASSES:
            kind = getattr(zel, name, None)
            if dataclasses.is_dataclass(kind):
                self.assertEqual(members(name)[0], [field.name for field in dataclasses.fields(kind)])
            elif hasattr(kind, "_fields"):
                self.assertEqual(members(name)[0], list(kind._fields))

    def test_have_the_members_of_the_table_with_their_types(self):
        python = {"boolean": "bool", "16-bit integer": "int", "32-bit integer": "int", "32-bit float": "float",
                  "text": "str", "object": "Any", "": "None"}
        attributes, methods = members("ProfileControl")
        rows = extension.member_rows()
        self.assertEqual({*attributes, *methods} - {"__init__"}, {name for name, *_ in rows})
        settable = {name for name, access, *_ in rows if access == extension.Access.LET}
        self.assertEqual(set(attributes), settable)
        types = {node.target.id: ast.unparse(node.annotation) for node in CLASSES["ProfileControl"].body
                 if isinstance(node, ast.AnnAssign)}
        for name, access, _, arguments, result, _ in rows:
            if name in attributes:
                self.assertEqual(types[name], python[result or arguments[0][1]], name)
                continue
            written = methods[name]
            self.assertEqual(is_property(written), access == extension.Access.GET, name)
            self.assertEqual([argument for argument, *_ in stub_arguments(written)], ["self", *(a for a, _ in arguments)])
            self.assertEqual(ast.unparse(written.returns), python[result], name)


class TheDocumentation(unittest.TestCase):
    def test_is_there_for_every_public_name(self):
        for name in zel.__all__:
            self.assertTrue(getattr(zel, name).__doc__, name)


if __name__ == "__main__":
    unittest.main()
