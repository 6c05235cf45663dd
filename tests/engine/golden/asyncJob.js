return clickPageElement("a[title=\"x\\y\"]")
return [1]