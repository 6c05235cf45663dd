application id "com.nowhere.x" --> error -1728 Can’t get application id "com.nowhere.x".
application "Nowhere" --> error -1728 Can’t get application "Nowhere".
tell application id "com.nowhere.x" to activate --> error -1728
NSString of current application --> error -1728 Can’t get NSString of current application.
name of current application --> "Tabwright"
class of current application --> application
